import {ask} from './ask.js';
import {followRequests} from './connection.js';
import {say} from './dom.js';
import {answersView} from './answers.js';
import {liveView} from './live.js';
import {requestsView} from './requests.js';
import {sessionsView} from './sessions.js';
import {coalesced} from './slices.js';
import {isOfRun, Store} from './store.js';
import {whyView} from './why.js';
import {count} from './format.js';

// A view is made when it is first opened and kept: {node, update(), open(argument)}; `search` is what the field says.
const makers = {sessions: sessionsView, why: whyView, live: liveView, requests: requestsView, answers: answersView};
const views = new Map();
const store = new Store();
const el = id => document.getElementById(id);
let current = null;

const context = {store, get search() { return el('search').value.trim().toLowerCase(); }};

/** The view that the address names, and the session in it. */
function address() {
  let text = '';
  try {
    text = decodeURIComponent(location.hash.replace(/^#\/?/, ''));
  } catch { /* what is no address leads to the first view */ }
  const [name, ...rest] = text.split('/');
  return Object.hasOwn(makers, name) ? {name, key: rest.join('/')} : {name: 'sessions', key: ''};
}

function route() {
  const {name, key} = address();
  const isGone = key !== '' && store.run !== null && !isOfRun(key, store.run);
  if (isGone) history.replaceState(null, '', '#/' + name);
  el('gone').hidden = !isGone;
  if (!views.has(name)) views.set(name, makers[name](context));
  current = views.get(name);
  // What is put in again loses its focus and its place.
  if (el('view').firstChild !== current.node) el('view').replaceChildren(current.node);
  for (const link of document.querySelectorAll('nav a')) {
    if (link.hash === '#/' + name) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  }
  el('search').disabled = name === 'answers';
  current.open?.(isGone ? '' : key);
  update();
}

function update() {
  const nothing = store.requests.length === 0 && current !== views.get('answers');
  el('empty').hidden = !nothing;
  el('view').hidden = nothing;
  if (!nothing) current.update();
}

let run = null;

/** Nothing of what was forgotten may be taken for what comes now. */
function followRun() {
  if (store.run === run) return;
  const isFirst = run === null;
  run = store.run;
  for (const view of views.values()) view.forget?.();
  if (address().key) route();
  if (!isFirst) el('gone').hidden = true;
}

const updateSoon = coalesced(() => { followRun(); update(); tellState(); });

// --- The connection ---

let trouble = null;  // null: nothing is known yet
let told = '';

function tellState() {
  if (trouble === null) return;
  const text = trouble || count(store.requests.length, 'request');
  if (el('state').textContent !== text) el('state').textContent = text;
  el('state').classList.toggle('lost', trouble !== '');
  if (trouble !== told) say(trouble ? trouble[0].toUpperCase() + trouble.slice(1) : 'Connected');
  told = trouble;
}

async function clear() {
  const {error} = await ask('DELETE', '/inspect/requests');
  if (error) el('state').textContent = error;
}

store.listeners.add(updateSoon);
for (const node of document.querySelectorAll('.origin')) node.textContent = location.origin;
el('search').addEventListener('input', coalesced(update, 150));
el('clear').addEventListener('click', clear);
document.querySelector('.skip').addEventListener('click', event => { event.preventDefault(); el('main').focus(); });
addEventListener('hashchange', route);
route();
followRequests(store, what => { trouble = what; tellState(); });
