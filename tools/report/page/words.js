// Numbers, times and counts as texts.
const NOTHING = '–';

function isNumber(value) {
  return typeof value === 'number' && Number.isFinite(value);
}

function fixed(value, decimals) {
  if (Math.abs(value) === Infinity) return value < 0 ? '-inf' : 'inf';
  if (!isNumber(value)) return NOTHING;
  const text = value.toFixed(decimals);
  return Number(text) === 0 ? text.replace('-', '') : text;
}

function counted(count, one, many) {
  return `${count} ${count === 1 ? one : many ?? one + 's'}`;
}

// Seconds since 1970 as a day.
function dayText(seconds) {
  return isNumber(seconds) ? new Date(seconds * 1000).toISOString().slice(0, 10) : NOTHING;
}

function degreesText(value, positive, negative) {
  if (!isNumber(value)) return fixed(value);
  return `${Math.abs(value).toFixed(4)}° ${value < 0 ? negative : positive}`;
}

// Longitudes of results run from 0 up to 360.
function longitudeText(value) {
  return degreesText(isNumber(value) && value > 180 ? value - 360 : value, 'E', 'W');
}

function latitudeText(value) {
  return degreesText(value, 'N', 'S');
}
