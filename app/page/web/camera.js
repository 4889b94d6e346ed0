// Where the viewer looks: the point of the drawing in the middle, and pixels for a drawing unit.
class Camera {
  constructor(extents) {
    this.extents = extents;
    this.width = 1;
    this.height = 1;
    this.fit();
  }

  // The size of what is looked through, in pixels.
  resize(width, height) {
    this.width = Math.max(1, width);
    this.height = Math.max(1, height);
  }

  fit(extents = this.extents) {
    const [lowX, lowY, highX, highY] = extents;
    this.x = lowX / 2 + highX / 2;
    this.y = lowY / 2 + highY / 2;
    const margin = 24;
    const wide = Math.max(1, this.width - 2 * margin) / (highX - lowX);
    const high = Math.max(1, this.height - 2 * margin) / (highY - lowY);
    const scale = Math.min(wide, high);
    // A point has no size to fit.
    this.scale = Number.isFinite(scale) && scale > 0 ? scale : 1;
  }

  move(right, down) {
    this.x -= right / this.scale;
    this.y += down / this.scale;
  }

  // What is at this pixel stays there.
  zoom(factor, pixelX = this.width / 2, pixelY = this.height / 2) {
    const [x, y] = this.toDrawing(pixelX, pixelY);
    const size = Math.max(this.extents[2] - this.extents[0], this.extents[3] - this.extents[1]) || 1;
    // Beyond, the drawing's coordinates are too coarse, or it is a dot.
    this.scale = Math.min(Math.max(this.scale * factor, 1 / size), 1e8 / size);
    this.x = x - (pixelX - this.width / 2) / this.scale;
    this.y = y + (pixelY - this.height / 2) / this.scale;
  }

  toDrawing(pixelX, pixelY) {
    return [this.x + (pixelX - this.width / 2) / this.scale, this.y - (pixelY - this.height / 2) / this.scale];
  }

  toPixel(x, y) {
    return [(x - this.x) * this.scale + this.width / 2, this.height / 2 - (y - this.y) * this.scale];
  }

  copy() {
    return Object.assign(new Camera(this.extents), this);
  }
}
