import {say} from './dom.js';
import {answersView} from './answers.js';
import {liveView} from './live.js';
import {requestsView} from './requests.js';
import {sessionsView} from './sessions.js';
import {coalesced} from './slices.js';
import {Store} from './store.js';
import {whyView} from './why.js';
import {count} from './format.js';

// A view is made when it is first opened and kept: {node, update(), open(argument)}; `search` is what the field says.
const makers = {sessions: sessionsView, why: whyView, live: liveView, requests: requestsView, answers: answersView};
const views = new Map();
const store = new Store();
const el = id => document.getElementById(id);
let current = null;

const context = {store, get search() { return el('search').value.trim().toLowerCase(); }};

function route() {
  const [name, ...rest] = decodeURIComponent(location.hash.replace(/^#\/?/, '')).split('/');
  const known = name in makers ? name : 'sessions';
  if (!views.has(known)) views.set(known, makers[known](context));
  current = views.get(known);
  el('view').replaceChildren(current.node);
  for (const link of document.querySelectorAll('nav a')) {
    if (link.hash === '#/' + known) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  }
  el('search').disabled = known === 'answers';
  current.open?.(rest.join('/'));
  update();
}

function update() {
  const nothing = store.requests.length === 0 && current !== views.get('answers');
  el('empty').hidden = !nothing;
  el('view').hidden = nothing;
  if (!nothing) current.update();
}

const updateSoon = coalesced(() => { update(); tellState(); });

// --- The connection ---

let lost = true;
let toldLost = false;

function tellState() {
  const text = lost ? 'the backend does not answer' : count(store.requests.length, 'request');
  if (el('state').textContent !== text) el('state').textContent = text;
  el('state').classList.toggle('lost', lost);
  if (lost !== toldLost) say(lost ? 'The backend does not answer' : 'Connected');
  toldLost = lost;
}

function connect() {
  const stream = new EventSource('/inspect/stream');
  stream.onopen = () => { lost = false; tellState(); };
  stream.onmessage = event => { store.take(JSON.parse(event.data)); };
  stream.onerror = () => {
    lost = true;
    tellState();
    // A refused stream is not tried again by the browser.
    if (stream.readyState === EventSource.CLOSED) setTimeout(connect, 2000);
  };
}

store.listeners.add(updateSoon);
for (const node of document.querySelectorAll('.origin')) node.textContent = location.origin;
el('search').addEventListener('input', coalesced(update, 150));
el('clear').addEventListener('click', async () => {
  try {
    await fetch('/inspect/requests', {method: 'DELETE'});
  } catch { /* the lost stream says so */ }
});
document.querySelector('.skip').addEventListener('click', event => { event.preventDefault(); el('main').focus(); });
addEventListener('hashchange', route);
route();
connect();
