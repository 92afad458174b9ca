// The part of one pair.
const LINES = ['first line', 'last line'];

function resultRow(pair, name, key, text) {
  return element('tr', {}, element('th', {scope: 'row'}, name, element('code', {}, key)), element('td', {class: 'number'}, text));
}

function numberRow(pair, name, key, decimals, unit) {
  return resultRow(pair, name, key, `${fixed(numberOf(pair, key), decimals)}${unit === '°' ? '' : ' '}${unit}`);
}

function resultTable(title, ...rows) {
  return element('table', {class: 'results'}, element('caption', {}, title), element('tbody', {}, rows));
}

function metresPerCycleText(pair) {
  return hasMarker(pair) ? 'a sample has no baseline' : `${fixed(numberOf(pair, 'height_conversion_factor'), 3)} m`;
}

function resultTables(pair) {
  const corner = (name, key) => resultRow(pair, name, `${key}_rg_latitude, …_longitude`,
    `${latitudeText(numberOf(pair, `${key}_rg_latitude`))}, ${longitudeText(numberOf(pair, `${key}_rg_longitude`))}`);
  return element('div', {class: 'columns'},
    resultTable('Baseline and phase',
      numberRow(pair, 'Effective baseline', 'eff_baseline', 3, 'm'),
      isSinglePass(pair) ? resultRow(pair, 'Perpendicular baseline', '4 · eff_baseline', `${fixed(4 * numberOf(pair, 'eff_baseline'), 3)} m`) : null,
      resultRow(pair, 'Metres per cycle, mean', 'height_conversion_factor', metresPerCycleText(pair)),
      numberRow(pair, 'Range difference, mean', 'varnoth_deltaR', 3, 'm'),
      numberRow(pair, 'Fringe frequency in range', 'fringe_frequency_range', 6, 'cycles/sample'),
      numberRow(pair, 'Fringe frequency in azimuth', 'fringe_frequency_azimuth', 6, 'cycles/line'),
      resultRow(pair, 'Largest misfit of the polynomials', 'log', `${fixed(misfitOf(pair), 4)} cycles`)),
    resultTable('Viewing',
      resultRow(pair, 'Pass', 'equator_crossing_direction', textOf(pair, 'equator_crossing_direction')),
      resultRow(pair, 'Look direction', 'sensor_look_direction', textOf(pair, 'sensor_look_direction')),
      numberRow(pair, 'Heading, from north over east', 'heading_angle', 3, '°'),
      numberRow(pair, 'Incidence, near range', 'incidence_angle_near_range', 3, '°'),
      numberRow(pair, 'Incidence, mid range', 'incidence_angle_mid_range', 3, '°'),
      numberRow(pair, 'Incidence, far range', 'incidence_angle_far_range', 3, '°'),
      numberRow(pair, 'Pixel spacing in azimuth', 'ssc_pixel_spacing_azimuth', 3, 'm'),
      numberRow(pair, 'Pixel spacing on the ground, far range', 'ssc_pixel_spacing_ground_range', 3, 'm')),
    resultTable('Place',
      resultRow(pair, 'Centre', 'center_latitude, …_longitude',
        `${latitudeText(numberOf(pair, 'center_latitude'))}, ${longitudeText(numberOf(pair, 'center_longitude'))}`),
      corner('First line, near', 'early_az_near'), corner('First line, far', 'early_az_far'),
      corner('Last line, near', 'late_az_near'), corner('Last line, far', 'late_az_far'),
      resultRow(pair, 'Lines × samples', 'n_lines, n_samples', `${fixed(numberOf(pair, 'n_lines'), 0)} × ${fixed(numberOf(pair, 'n_samples'), 0)}`),
      numberRow(pair, 'Height above the ellipsoid', 'local_height', 1, 'm')));
}

function sceneWords(pair, scene) {
  const {text, raw} = dayOf(pair, scene);
  if (isNumber(secondsOf(pair, scene))) return `${text} ${pair.times[scene][0].slice(11, 19)}`;
  return ['of ', element(raw ? 'abbr' : 'span', {title: raw}, 'unknown date')];
}

function scenesWords(pair) {
  if (!pair.times[0][0] && !pair.times[1][0]) return null;
  const days = daysOf(pair);
  return ['Master ', sceneWords(pair, 0), ', slave ', sceneWords(pair, 1),
    isNumber(days) ? `: ${counted(Math.round(Math.abs(days)), 'day')} ${days < 0 ? 'earlier' : 'later'}.` : '.'];
}

function baselineText(pair) {
  const baseline = numberOf(pair, 'eff_baseline');
  if (!isNumber(baseline) || hasMarker(pair)) return 'The effective baseline has no usable value: look at the results.';
  const [side, phase] = baseline > 0 ? ['smaller', 'grows'] : ['larger', 'falls'];
  return `Effective baseline ${fixed(baseline, 1)} m: the slave sees the target under the ${side} incidence, ` +
    `and the phase ${phase} with height, by one cycle in ${fixed(Math.abs(numberOf(pair, 'height_conversion_factor')), 1)} m.`;
}

// A curve over range: of each quantity, its values on the first and on the last line.
function rangeCurve(pair, title, unit, decimals, names) {
  const lists = Object.entries(names).flatMap(([key, word]) => pair.curves[key].map((values, line) => ({values, name: `${word}${LINES[line]}`})))
    .filter(({values}) => values.length === pair.samples.length && values.some(isNumber));
  if (!lists.length || !pair.samples.length) return null;
  const rows = pair.samples.map((sample, i) => [sample, ...lists.map(({values}) => values[i])]);
  return chart({title, unit, rows, series: lists.map(({name}) => name), hasTable: true, xName: 'sample',
    valueText: (value) => fixed(value, decimals), rowText: (row) => `at sample ${fixed(rows[row][0], 1)}`,
    xText: (row) => fixed(rows[row][0], 1), axisText: (value) => String(value), hint: 'over range, in master samples'});
}

function misfitReason(pair) {
  return isSinglePass(pair)
    ? 'Left out: the misfit. In single pass it comes from the tables of the log, which the level INFO writes (-lfl INFO).'
    : 'Left out: the misfit. It needs radar_frequency of both scene pools.';
}

function curves(pair) {
  const drawn = [
    rangeCurve(pair, 'Metres per cycle', 'm', 3, {metres_per_cycle: ''}),
    rangeCurve(pair, 'Flat-earth phase', 'cycles', 3, {phase: ''}),
    rangeCurve(pair, 'Misfit of the polynomial', 'cycles, polynomial minus phase', 5, {misfit: ''}),
    rangeCurve(pair, 'Angles of the master', 'degrees', 4, {incidence: 'incidence, ', look: 'look angle, '}),
    rangeCurve(pair, 'Slave minus master', 'degrees', 6, {incidence_difference: 'incidence, ', look_difference: 'look angle, '}),
    rangeCurve(pair, 'Range difference', 'm, master minus slave', 4, {range_difference: ''})];
  return section('Over range', element('div', {class: 'charts'}, drawn),
    drawn[2] ? null : element('p', {class: 'quiet'}, misfitReason(pair)),
    drawn.slice(0, 2).includes(null) ? element('p', {class: 'quiet'}, 'Left out: curves whose results are missing or not numbers.') : null);
}

function ninePoints(pair) {
  const [effective, baseline] = pair.grids;
  if (!effective || !baseline) {
    return [element('p', {class: 'quiet'}, pair.log.fault
      ? `Left out: the nine points. The log can't be read: ${pair.log.fault}.`
      : 'Left out: the nine points. The log lacks their tables, which the level INFO writes (-lfl INFO).')];
  }
  const table = (title, grid) => element('figure', {}, element('figcaption', {}, title, element('small', {}, ' m, without a sign')),
    plainTable(['line', ...grid.samples.map((sample, i) => `${['near', 'mid', 'far'][i]}, sample ${sample}`)],
      grid.lines.map((line, i) => [String(line), ...grid.values[i].map((value) => fixed(value, 2))])));
  return [table('Effective baseline', effective), table('Baseline', baseline)];
}

function polynomials(pair) {
  const count = Math.max(...pair.polynomials.map((list) => list.length));
  if (!(count > 0)) return null;
  const rows = Array.from({length: count}, (_, i) => [`p${i}`, ...pair.polynomials.map((list) => isNumber(list[i]) ? String(list[i]) : NOTHING)]);
  return element('details', {}, element('summary', {}, `Polynomials of the flat-earth phase, degree ${count - 1}, in cycles`),
    plainTable(['', ...LINES], rows));
}

function notices(pair) {
  const log = pair.log;
  const state = log.fault ? `The log can't be read: ${log.fault}.`
    : !log.is_ended ? 'The log does not tell the end of the run: it was killed, or the log is cut off.'
      : !pair.notices.length ? 'The run wrote no warning.' : null;
  return section('Warnings of the run', state ? element('p', {class: 'quiet'}, state) : null, pair.notices.length ? noticeList(pair) : null);
}

function pairPart(pair) {
  const isDone = pair.ending === 'done';
  const words = [scenesWords(pair), isDone ? baselineText(pair) : null,
    isSinglePass(pair) ? 'Single pass: the effective baseline is a quarter of the perpendicular one.' : null];
  return [
    DATA.is_stack ? element('nav', {}, element('a', {href: '#'}, '← All pairs')) : null,
    element('h1', {tabindex: -1}, pair.name, isDone ? null : [' ', element('span', {class: `ending ${pair.ending}`}, pair.ending)]),
    words.filter(Boolean).map((text) => element('p', {class: 'words'}, text)),
    element('p', {class: 'quiet'}, pair.place, pair.log.started ? `, run of ${pair.log.started}` : ''),
    pair.remarks.length ? element('ul', {class: 'remarks'}, pair.remarks.map((text) => element('li', {}, text))) : null,
    pair.numbers && isDone ? null : notices(pair),
    pair.numbers ? [section('Results', resultTables(pair), polynomials(pair)),
      isDone ? notices(pair) : null, section('Map and nine points', element('div', {class: 'columns'},
        footprintMap([pair]) ?? element('p', {class: 'quiet'}, 'Left out: the map. Corners are missing.'), ninePoints(pair))), curves(pair)] : null];
}
