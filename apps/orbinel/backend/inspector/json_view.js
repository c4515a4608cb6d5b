import {copyButton, make} from './dom.js';
import {brief, isObject} from './format.js';

const wholeLimit = 20_000;  // characters shown as one text
const portion = 100;        // entries of a list at once
const textLimit = 2_000;

/** A value as people read it; what is large opens piece by piece. */
export function jsonView(value, size = 0) {
  const copy = copyButton('Copy', () => JSON.stringify(value, null, 2));
  const text = size <= wholeLimit ? JSON.stringify(value, null, 2) : undefined;
  const whole = text !== undefined && text.length <= wholeLimit * 2;
  return make('div', {class: 'json'}, copy, whole ? make('pre', {tabindex: 0}, text) : make('div', {class: 'tree'}, ...nodesOf(value)));
}

function nodesOf(value) {
  const entries = Array.isArray(value) ? value.map((one, i) => [i, one]) : Object.entries(isObject(value) ? value : {value});
  const nodes = entries.slice(0, portion).map(([name, one]) => nodeOf(name, one));
  if (entries.length > portion) nodes.push(moreButton(entries, portion));
  return nodes;
}

function moreButton(entries, from) {
  const button = make('button', {type: 'button', onclick: () => {
    const next = entries.slice(from, from + portion).map(([name, one]) => nodeOf(name, one));
    if (entries.length > from + portion) next.push(moreButton(entries, from + portion));
    button.replaceWith(...next);
  }}, `${entries.length - from} more`);
  return button;
}

function nodeOf(name, value) {
  const key = make('span', {class: 'key'}, String(name));
  if (value === null || typeof value !== 'object') return make('div', {class: 'leaf'}, key, leafOf(value));
  const details = make('details', {}, make('summary', {}, key, ' ', brief(value, 80)));
  details.addEventListener('toggle', () => {
    if (details.open && details.childElementCount === 1) details.append(...nodesOf(value));
  });
  return details;
}

function leafOf(value) {
  const text = JSON.stringify(value) ?? 'nothing';
  if (text.length <= textLimit) return make('span', {}, text);
  const shown = make('span', {}, text.slice(0, textLimit) + ' … ');
  const button = make('button', {type: 'button', onclick: () => { shown.textContent = text; button.remove(); }}, 'All of it');
  return make('span', {}, shown, button);
}
