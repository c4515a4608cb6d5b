const clock = new Intl.DateTimeFormat([], {hour: '2-digit', minute: '2-digit', second: '2-digit', hourCycle: 'h23'});
const day = new Intl.DateTimeFormat([], {dateStyle: 'medium', timeStyle: 'medium', hourCycle: 'h23'});

// Dates reach this far; a device may send anything.
const isMoment = seconds => Number.isFinite(seconds) && Math.abs(seconds) < 8e12;

/** Seconds since 1970 as a time of day. */
export function timeOf(seconds) {
  return isMoment(seconds) ? clock.format(seconds * 1000) : '';
}

export function momentOf(seconds) {
  return isMoment(seconds) ? day.format(seconds * 1000) : '';
}

export function sizeOf(bytes) {
  if (bytes < 1000) return bytes + ' B';
  return bytes < 1e6 ? (bytes / 1000).toFixed(1) + ' KB' : (bytes / 1e6).toFixed(1) + ' MB';
}

export function count(number, noun, nouns = noun + 's') {
  return number.toLocaleString('en') + ' ' + (number === 1 ? noun : nouns);
}

/** A value in a few characters of one line. */
export function brief(value, limit = 120) {
  let text;
  if (Array.isArray(value)) text = '[' + value.slice(0, 20).map(one => brief(one, 40)).join(', ') + ']';
  else if (isObject(value)) text = Object.entries(value).slice(0, 20).map(([name, one]) => name + ' ' + brief(one, 40)).join(', ');
  else text = String(value);
  return text.length > limit ? text.slice(0, limit) + ' …' : text;
}

export function isObject(value) {
  return value !== null && typeof value === 'object' && !Array.isArray(value);
}

export function objectOr(value) { return isObject(value) ? value : {}; }
export function listOr(value) { return Array.isArray(value) ? value : []; }
export function textOr(value, otherwise = '') { return typeof value === 'string' ? value : otherwise; }
export function numberOr(value, otherwise) { return typeof value === 'number' && Number.isFinite(value) ? value : otherwise; }
