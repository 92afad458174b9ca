// Footprints on a map of land, with degrees on its frame. Lengths are right along the middle parallel.
const LAND_UNITS = 100; // a degree
const CORNERS = ['early_az_near', 'early_az_far', 'late_az_far', 'late_az_near'];

// The longitude that means the same within half a turn of another one.
function beside(longitude, other) {
  return longitude - 360 * Math.round((longitude - other) / 360);
}

// The outline as [longitude, latitude], beside the land of the page; null where a corner is missing.
function footprintOf(pair) {
  const ring = CORNERS.map((corner) => [numberOf(pair, `${corner}_rg_longitude`), numberOf(pair, `${corner}_rg_latitude`)]);
  if (!ring.every(([longitude, latitude]) => Math.abs(longitude ?? NaN) <= 360 && Math.abs(latitude ?? NaN) <= 90)) return null;
  const start = beside(ring[0][0], DATA.middle_longitude);
  return ring.map(([longitude, latitude]) => [beside(longitude, start), latitude]);
}

function niceStep(span, count) {
  const least = span / count;
  return [0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 30, 60].find((step) => step >= least) ?? 90;
}

function stepsWithin(low, high, step) {
  const steps = [];
  for (let at = Math.ceil(low / step) * step; at <= high; at += step) steps.push(at);
  return steps;
}

class MapView {
  constructor(rings, width) {
    const longitudes = rings.flat().map((point) => point[0]);
    const latitudes = rings.flat().map((point) => point[1]);
    const [west, east] = [Math.min(...longitudes), Math.max(...longitudes)];
    const [south, north] = [Math.min(...latitudes), Math.max(...latitudes)];
    this.shrink = Math.max(Math.cos((south + north) / 2 * Math.PI / 180), 0.05); // a pole has no parallel
    const size = Math.max((east - west) * this.shrink, north - south, 0.2);
    this.width = width;
    const tallest = Math.round(width * 0.72);
    // Pixels of a degree of latitude. No map shows more than the whole world.
    this.scale = Math.max(tallest / (2.2 * size), width / (360 * this.shrink));
    this.height = Math.min(tallest, Math.floor(180 * this.scale));
    const [wide, high] = [this.width / 2 / this.scale / this.shrink, this.height / 2 / this.scale];
    this.middle = [(west + east) / 2, Math.min(Math.max((south + north) / 2, high - 90), 90 - high)];
    this.box = {west: this.middle[0] - wide, east: this.middle[0] + wide, south: this.middle[1] - high, north: this.middle[1] + high};
  }

  x(longitude) { return this.width / 2 + (longitude - this.middle[0]) * this.shrink * this.scale; }
  y(latitude) { return this.height / 2 - (latitude - this.middle[1]) * this.scale; }

  path(ring) {
    return 'M' + ring.map(([longitude, latitude]) => `${this.x(longitude).toFixed(1)} ${this.y(latitude).toFixed(1)}`).join('L') + 'Z';
  }

  land() {
    return svg('path', {class: 'land', 'fill-rule': 'evenodd', d: DATA.land.map((numbers) => this.path(
      numbers.filter((_, i) => i % 2 === 0).map((longitude, i) => [longitude / LAND_UNITS, numbers[2 * i + 1] / LAND_UNITS]))).join('')});
  }

  graticule() {
    const step = niceStep(this.box.north - this.box.south, 5);
    const digits = step < 0.1 ? 2 : step < 1 ? 1 : 0;
    const label = (x, y, anchor, value, positive, negative) => svg('text', {x, y, 'text-anchor': anchor},
      `${Math.abs(value).toFixed(digits)}°${Math.abs(value) < 1e-9 ? '' : value < 0 ? negative : positive}`);
    const eastward = Math.max(step, niceStep(this.box.east - this.box.west, this.width / 90));
    return svg('g', {class: 'graticule'},
      stepsWithin(this.box.west, this.box.east, eastward).map((longitude) => [
        svg('line', {x1: this.x(longitude), x2: this.x(longitude), y1: 0, y2: this.height}),
        label(this.x(longitude) + 3, this.height - 4, 'start', beside(longitude, 0), 'E', 'W')]),
      stepsWithin(this.box.south, this.box.north, step).map((latitude) => [
        svg('line', {x1: 0, x2: this.width, y1: this.y(latitude), y2: this.y(latitude)}),
        label(4, this.y(latitude) - 3, 'start', latitude, 'N', 'S')]));
  }

  scaleBar() {
    const KILOMETRES_OF_DEGREE = 111.2;
    const pixels = this.scale / KILOMETRES_OF_DEGREE;
    const length = [1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000].findLast((km) => km * pixels < this.width / 4) ?? 1;
    const [x, y] = [this.width - 12, this.height - 22];
    return svg('g', {class: 'scale'}, svg('line', {x1: x - length * pixels, x2: x, y1: y, y2: y}),
      svg('text', {x, y: y - 5, 'text-anchor': 'end'}, `${length} km`));
  }

  // From the middle of the first line to that of the last one: the way of the satellite.
  flight(ring) {
    const between = (a, b) => [this.x((ring[a][0] + ring[b][0]) / 2), this.y((ring[a][1] + ring[b][1]) / 2)];
    const [[ax, ay], [bx, by]] = [between(0, 1), between(2, 3)];
    const turn = Math.atan2(by - ay, bx - ax) * 180 / Math.PI;
    const below = by < ay ? 14 : -6; // the names of the first line's ends stand outside
    return svg('g', {class: 'flight'}, svg('line', {x1: ax, y1: ay, x2: bx, y2: by}),
      svg('path', {d: 'M0 0L-9 4L-9 -4Z', transform: `translate(${bx} ${by}) rotate(${turn})`}),
      svg('text', {x: this.x(ring[0][0]), y: this.y(ring[0][1]) + below, 'text-anchor': 'middle'}, 'near'),
      svg('text', {x: this.x(ring[1][0]), y: this.y(ring[1][1]) + below, 'text-anchor': 'middle'}, 'far'));
  }
}

// The map of some pairs' footprints, or null where there is none.
function footprintMap(pairs) {
  const rings = new Map();
  for (const pair of pairs) {
    const ring = footprintOf(pair);
    if (ring) rings.set(ring.flat().map((degrees) => degrees.toFixed(2)).join(), ring);
  }
  if (rings.size === 0) return null;
  const outlines = [...rings.values()];
  const host = element('div', {class: 'map'});
  const draw = () => {
    const view = new MapView(outlines, Math.max(host.clientWidth, 240));
    host.replaceChildren(svg('svg', {viewBox: `0 0 ${view.width} ${view.height}`, role: 'img', 'aria-label': 'Map of the footprint'},
      view.land(), view.graticule(), svg('path', {class: 'footprint', d: outlines.map((ring) => view.path(ring)).join('')}),
      outlines.length === 1 ? view.flight(outlines[0]) : null, view.scaleBar()));
  };
  whenShown(host, () => {
    draw();
    let width = host.clientWidth;
    new ResizeObserver(() => {
      if (host.clientWidth === width || host.clientWidth === 0) return;
      width = host.clientWidth;
      draw();
    }).observe(host);
  });
  return element('figure', {}, element('figcaption', {}, outlines.length === 1 ? 'Footprint' : 'Footprints'), host);
}
