// Measures a distance between two points of the drawing.

// A length to six digits, as people write it.
function lengthText(length) {
  if (!Number.isFinite(length)) {
    return '';
  }
  const size = Math.abs(length);
  if (size !== 0 && (size < 1e-4 || size >= 1e9)) {
    return length.toExponential(4);
  }
  const digits = Math.max(0, Math.min(8, 5 - Math.floor(Math.log10(size || 1))));
  const text = length.toFixed(digits);
  return text.includes('.') ? text.replace(/0+$/, '').replace(/\.$/, '') : text;
}

class Tape {
  constructor(unit) {
    this.unit = unit ? ` ${unit}` : '';
    this.clear();
  }

  clear() {
    this.points = [];
  }

  // The third point begins anew.
  add(point) {
    this.points = this.points.length === 2 ? [point] : [...this.points, point];
  }

  // From the first point to the second, or to `end` while there is none; empty without a first.
  text(end) {
    const [from, to = end] = this.points;
    if (!from || !to) {
      return '';
    }
    const right = to[0] - from[0];
    const up = to[1] - from[1];
    const angle = ((Math.atan2(up, right) * 180) / Math.PI).toFixed(1);
    return `Distance ${lengthText(Math.hypot(right, up))}${this.unit} (across ${lengthText(right)}, up ${lengthText(up)}, ${angle}°)`;
  }

  draw(context, camera, scheme, ratio, end) {
    const [from, to = end] = this.points;
    const dots = [from, to].filter(Boolean).map((point) => camera.toPixel(...point).map((pixel) => pixel * ratio));
    context.strokeStyle = scheme.mark;
    context.fillStyle = scheme.mark;
    context.lineWidth = 2 * ratio;
    if (from && to) {
      context.beginPath();
      context.moveTo(...dots[0]);
      context.lineTo(...dots[1]);
      context.stroke();
    }
    for (const [x, y] of dots) {
      context.beginPath();
      context.arc(x, y, 4 * ratio, 0, 2 * Math.PI);
      context.stroke();
    }
  }
}
