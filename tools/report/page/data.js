// What the program wrote into the page.
const DATA = JSON.parse(document.getElementById('data').textContent);
const PLACE_OF_KEY = new Map(DATA.keys.map((key, place) => [key, place]));
const DAY = 86400;
const NO_BASELINE = 1e12; // metres per cycle beyond this hold the marker of a sample without baseline

DATA.pairs.forEach((pair, index) => { pair.index = index; });

// JSON has texts for what it has no numbers for.
const INFINITIES = {inf: Infinity, '-inf': -Infinity};

function numberOf(pair, key) {
  const value = pair.numbers?.[PLACE_OF_KEY.get(key)] ?? null;
  return INFINITIES[value] ?? value;
}

function textOf(pair, key) {
  return pair.texts?.[key] ?? '';
}

// Seconds since 1970 of the master (0) or slave (1), or null where its times are no dates.
function secondsOf(pair, scene) {
  return pair.times[scene][1];
}

// The day of the master (0) or slave (1); what the pool has where that is no date stands in `raw`.
function dayOf(pair, scene) {
  const [raw, seconds] = pair.times[scene];
  if (isNumber(seconds)) return {text: dayText(seconds)};
  return raw ? {text: 'unknown date', raw: `orbit_reference_time ${raw}`} : {text: ''};
}

function daysOf(pair) {
  const [master, slave] = [secondsOf(pair, 0), secondsOf(pair, 1)];
  return isNumber(master) && isNumber(slave) ? (slave - master) / DAY : null;
}

function isSinglePass(pair) {
  return textOf(pair, 'observation_mode') === 'single_pass';
}

function hasMarker(pair) {
  const metres = numberOf(pair, 'height_conversion_factor');
  return isNumber(metres) && Math.abs(metres) > NO_BASELINE;
}

// The largest misfit of the polynomials in cycles: of the curve, else as the log has it.
function misfitOf(pair) {
  const values = (pair.curves?.misfit ?? []).flat().filter(isNumber).map(Math.abs);
  return values.length ? Math.max(...values) : pair.log.misfit;
}

// Lines of the log, and what was wrong with the pair's files.
function messageCount(pair) {
  return pair.notices.length + pair.remarks.length;
}

function firstAlarm(pair) {
  return pair.notices.find(([level]) => level === 'ALARM') ?? null;
}
