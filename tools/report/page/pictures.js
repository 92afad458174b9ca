// Pictures of a stack: its network, its baselines against date and their histogram.
const SAME_SCENE = 120; // seconds: scenes of one date, cut differently

// The scenes of some pairs: start (seconds since 1970), and of each pair the places of its two.
function scenesOf(pairs) {
  const times = pairs.flatMap((pair) => [secondsOf(pair, 0), secondsOf(pair, 1)]).sort((a, b) => a - b);
  const starts = [];
  const places = new Map();
  times.forEach((time, i) => {
    if (i === 0 || time - times[i - 1] > SAME_SCENE) starts.push(time);
    places.set(time, starts.length - 1);
  });
  return {starts, edges: pairs.map((pair) => [places.get(secondsOf(pair, 0)), places.get(secondsOf(pair, 1))])};
}

// Baselines of the scenes of each connected part against its scene with most pairs, added up along
// the way with the fewest pairs.
function placeScenes(pairs) {
  const {starts, edges} = scenesOf(pairs);
  const neighbours = starts.map(() => []);
  edges.forEach(([a, b], i) => {
    const baseline = numberOf(pairs[i], 'eff_baseline');
    neighbours[a].push([b, baseline]);
    neighbours[b].push([a, -baseline]);
  });
  const baselines = starts.map(() => null);
  const parts = [];
  for (const root of starts.map((_, i) => i).sort((a, b) => neighbours[b].length - neighbours[a].length)) {
    if (baselines[root] !== null) continue;
    baselines[root] = 0;
    parts.push(root);
    for (const queue = [root]; queue.length;) {
      const scene = queue.shift();
      for (const [next, step] of neighbours[scene]) {
        if (baselines[next] !== null) continue;
        baselines[next] = baselines[scene] + step;
        queue.push(next);
      }
    }
  }
  return {starts, edges, baselines, parts, counts: neighbours.map((list) => list.length)};
}

function dated(pairs) {
  return pairs.filter((pair) => isNumber(secondsOf(pair, 0)) && isNumber(secondsOf(pair, 1)) &&
    isNumber(numberOf(pair, 'eff_baseline')) && !hasMarker(pair));
}

function networkChart(pairs) {
  const network = placeScenes(pairs.filter((pair) => Math.abs(daysOf(pair)) * DAY > SAME_SCENE));
  if (network.starts.length < 2) return null;
  const rows = network.starts.map((start, i) => [new Date(start * 1000), network.baselines[i]]);
  const reference = dayText(network.starts[network.parts[0]]);
  const figure = chart({title: 'Network', unit: 'm, effective baseline against date', rows, series: ['scene'], plot: 'dots',
    valueText: (value) => `${fixed(value, 1)} m`, rowText: (row) => `${dayText(network.starts[row])}, ${counted(network.counts[row], 'pair')}`,
    hint: `${counted(rows.length, 'scene')}, ${counted(network.edges.length, 'pair')}`,
    under: (context, area, graph) => {
      context.strokeStyle = colours()[0];
      context.globalAlpha = Math.max(0.12, 0.6 / Math.sqrt(1 + network.edges.length / 100));
      context.beginPath();
      for (const [a, b] of network.edges) {
        context.moveTo(...graph.toDomCoords(rows[a][0], rows[a][1]));
        context.lineTo(...graph.toDomCoords(rows[b][0], rows[b][1]));
      }
      context.stroke();
      context.globalAlpha = 1;
    }});
  figure.append(element('p', {class: 'quiet'}, network.parts.length === 1 ? `Against the scene of ${reference}, added up along the pairs.`
    : `${network.parts.length} parts that no pair connects, each against its scene with most pairs.`));
  return figure;
}

function baselineChart(pairs) {
  const sorted = [...pairs].sort((a, b) => secondsOf(a, 1) - secondsOf(b, 1));
  return chart({title: 'Effective baseline', unit: 'm, against the date of the slave', series: ['pair'], plot: 'dots',
    rows: sorted.map((pair) => [new Date(secondsOf(pair, 1) * 1000), numberOf(pair, 'eff_baseline')]),
    valueText: (value) => `${fixed(value, 1)} m`, rowText: (row) => `${sorted[row].name}, ${dayText(secondsOf(sorted[row], 1))}`,
    open: (row) => { location.hash = `p${sorted[row].index}`; }, hint: 'click or Enter opens the pair'});
}

function binWidth(span, count) {
  const least = span / count;
  const power = 10 ** Math.floor(Math.log10(least));
  return power * [1, 2, 5, 10].find((step) => step * power >= least);
}

function histogramChart(pairs) {
  const values = pairs.map((pair) => numberOf(pair, 'eff_baseline'));
  const [low, high] = [Math.min(...values), Math.max(...values)];
  const width = high > low ? binWidth(high - low, Math.min(30, 8 + Math.sqrt(values.length))) : 1;
  const first = Math.floor(low / width);
  const counts = new Array(Math.floor(high / width) - first + 1).fill(0);
  for (const value of values) counts[Math.floor(value / width) - first] += 1;
  const from = (row) => (first + row) * width;
  return chart({title: 'Histogram of the baselines', unit: `pairs in ${width} m`, series: ['pairs'], plot: 'bars',
    window: [from(0), from(counts.length)], rows: counts.map((count, row) => [from(row) + width / 2, count]), valueText: (value) => counted(value, 'pair'),
    rowText: (row) => `from ${fixed(from(row), width < 1 ? 2 : 0)} to ${fixed(from(row + 1), width < 1 ? 2 : 0)} m`, axisText: (value) => String(value),
    hint: `${counted(values.length, 'pair')}, ${fixed(low, 1)} to ${fixed(high, 1)} m`});
}

function stackPictures(pairs) {
  const withBaseline = pairs.filter((pair) => isNumber(numberOf(pair, 'eff_baseline')) && !hasMarker(pair));
  const withDates = dated(pairs);
  const drawn = [withDates.length ? networkChart(withDates) : null, withDates.length ? baselineChart(withDates) : null,
    withBaseline.length ? histogramChart(withBaseline) : null, footprintMap(pairs)];
  const left = pairs.length - withDates.length;
  return section('Baselines', element('div', {class: 'charts'}, drawn), left === 0 ? null : element('p', {class: 'quiet'},
    `Left out of network and dates: ${counted(left, 'pair')} without dates or without a baseline.`));
}
