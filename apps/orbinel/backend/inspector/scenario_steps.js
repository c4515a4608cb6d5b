// What the steps of a copied session are made of.

const farthest = 30 * 86400;  // seconds between two steps

export const isText = value => typeof value === 'string';
export const isInt32 = value => Number.isInteger(value) && Math.abs(value) < 2 ** 31;
export const isPlain = value => isText(value) || typeof value === 'boolean' || (typeof value === 'number' && Number.isFinite(value));

export function call(operation, ...args) { return {call: operation, ...(args.length > 0 || operation.endsWith(':') ? {args} : {})}; }

/** A value given by the operation for its type: `prefix` "addParameterWith" or "setCustomAttributeWith". */
export function typedCall(prefix, name, value) {
  if (isText(value)) return [call(prefix + 'String', name, value)];
  if (typeof value === 'boolean') return [call(prefix + 'Boolean', name, value)];
  if (isInt32(value)) return [call(prefix + 'Int', name, value)];
  if (typeof value === 'number') return [call(prefix + 'Double', name, value)];
  if (Array.isArray(value) && value.every(isText)) return [call(prefix + 'Array', name, value)];
  return [];
}

const tenths = number => Math.round(number * 10) / 10;

/** The steps so far, and the moment on the device's clock that they have reached. */
export class Steps {
  constructor(begin) {
    this.now = begin;
    this.list = [];
  }

  add(...steps) { this.list.push(...steps); }

  /** Lets time pass up to that moment. */
  moveTo(moment) {
    const seconds = Math.min(farthest, tenths(moment - this.now));
    if (!(seconds > 0)) return;
    const last = this.list.at(-1);
    if (last && 'advance' in last && last.advance + seconds <= farthest) last.advance = tenths(last.advance + seconds);
    else this.add({advance: seconds});
    this.now = tenths(this.now + seconds);
  }

  pass(seconds) { this.moveTo(this.now + seconds); }
}
