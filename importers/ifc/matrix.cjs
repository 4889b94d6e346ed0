// Affine transforms: 16 numbers, column-major, as in glTF and web-ifc.
'use strict';

const IDENTITY = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];

// The transform that applies `second`, then `first`.
function product(first, second) {
  const result = new Array(16).fill(0);
  for (let column = 0; column < 4; ++column) {
    for (let row = 0; row < 4; ++row) {
      for (let i = 0; i < 4; ++i) {
        result[4 * column + row] += first[4 * i + row] * second[4 * column + i];
      }
    }
  }
  return result;
}

// The inverse transform, or null if there is none.
function inverse(m) {
  const cofactor = (row, column) => {
    const [r, s] = [(row + 1) % 3, (row + 2) % 3];
    const [c, d] = [(column + 1) % 3, (column + 2) % 3];
    return m[4 * c + r] * m[4 * d + s] - m[4 * d + r] * m[4 * c + s];
  };
  const determinant = [0, 1, 2].reduce((sum, column) => sum + m[4 * column] * cofactor(0, column), 0);
  if (!Number.isFinite(determinant) || determinant === 0) {
    return null;
  }
  const result = [...IDENTITY];
  for (let row = 0; row < 3; ++row) {
    for (let column = 0; column < 3; ++column) {
      result[4 * column + row] = cofactor(column, row) / determinant;
    }
  }
  for (let row = 0; row < 3; ++row) {
    result[12 + row] = -[0, 1, 2].reduce((sum, i) => sum + result[4 * i + row] * m[12 + i], 0);
  }
  return result;
}

function translation(x, y, z) {
  return [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1];
}

function apply(m, x, y, z) {
  return [0, 1, 2].map((row) => m[row] * x + m[4 + row] * y + m[8 + row] * z + m[12 + row]);
}

module.exports = { IDENTITY, product, inverse, translation, apply };
