// Geometry from the bytes of a fuzz input.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <vector>

#include "ktscene/kt_matrix.h"

// Mostly a whole number of a small grid, so that points often coincide and faces often degenerate;
// else a zero of either sign, a value at the limits of doubles, one that is not finite, or any
// bits.
double takeCoordinate(FuzzedDataProvider& data);
// Up to `most` triples, now and then with a remainder.
std::vector<double> takeCoords(FuzzedDataProvider& data, int most);
// Up to `most` entries: mostly numbers of points, then codes (empty runs and unknown codes
// included), numbers of no point, and any integers.
std::vector<int> takeIndices(FuzzedDataProvider& data, std::size_t pointCount, int most);
// Any 16 doubles, or a placement: a turn in plan, a tilt or a mirror image, moved by whole numbers.
KtMatrix takeMatrix(FuzzedDataProvider& data);
