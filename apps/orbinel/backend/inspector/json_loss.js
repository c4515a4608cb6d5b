// What a browser does not keep of a JSON text that it reads and writes again.

const tokens = /"(?:[^"\\]+|\\.)*"|-?\d[\d.eE+-]*|[a-z]+|[[\]{}]/g;

/** A clause about the first loss, or an empty text; `value` is what the text was read as. */
export function lossOf(text, value) {
  const came = text.match(tokens) ?? [];
  if (came.length !== JSON.stringify(value).match(tokens).length) return 'it names a member twice, of which one would be lost';
  return came.every(one => !/^[-\d]/.test(one) || isKept(one)) ? '' : 'it holds a number that would be rounded';
}

/** Whether a number comes out as it went in, however it is written. */
export function isKept(number) { return written(number) === written(String(Number(number))); }

/** One writing for all those of a number. */
function written(number) {
  const [, sign, whole, fraction = '', exponent = '0'] = /^(-?)(\d+)(?:\.(\d+))?(?:[eE]([+-]?\d+))?$/.exec(number) ?? [];
  if (whole === undefined) return number;
  const digits = (whole + fraction).replace(/^0+/, '');
  const significant = digits.replace(/0+$/, '');
  return sign + (significant ? `${significant}e${Number(exponent) - fraction.length + digits.length - significant.length}` : '0');
}
