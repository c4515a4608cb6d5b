import {copyButton, kindFilter, make} from './dom.js';
import {Details} from './details.js';
import {EntryList} from './entry_list.js';
import {brief, timeOf} from './format.js';
import {kinds, rowsOf, sessionAbout, sessionTitle} from './rows.js';
import {scenarioOf} from './scenario.js';
import {VirtualList} from './virtual_list.js';

/** Sessions, and the timeline of the chosen one: of the newest, until the person chooses one or an entry of it. */
export function sessionsView(context) {
  const details = new Details();
  const list = new VirtualList({label: 'Sessions, newest first', rowHeight: 64, newestFirst: true, fill: fillSession,
                                chosen: session => { location.hash = '#/sessions/' + session.key; }});
  const entries = new EntryList({label: 'Timeline, oldest first', details, chosen: () => { wanted ||= session.key; }});
  const on = new Set(Object.keys(kinds));
  const filter = kindFilter('Kinds of entries', kinds, on, () => showTimeline());
  const heading = make('h2', {});
  const meta = make('p', {class: 'meta'});
  const back = make('a', {class: 'back', href: '#/sessions'}, '‹ Sessions');
  const why = make('a', {class: 'button'}, 'Why not shown?');
  const untold = make('section', {class: 'untold', 'aria-label': 'About the copy', 'aria-live': 'polite', hidden: true});
  const copy = copyButton('Copy as scenario', () => {
    const {scenario, notes} = scenarioOf(session);
    showUntold(untold, notes, () => copy.focus());
    return JSON.stringify(scenario, null, 1) + '\n';
  });
  const node = make('div', {class: 'panes three'},
    make('section', {class: 'pane sessions', 'aria-label': 'Sessions'}, list.node),
    make('section', {class: 'pane timeline', 'aria-label': 'Timeline'},
      make('div', {class: 'heading'}, back, heading, make('div', {class: 'actions'}, why, copy), meta), untold,
      make('div', {class: 'filters'}, filter), entries.node),
    details.node);

  let wanted = '';
  let session = null;
  let drawn = '';
  let listed = -1;

  function showTimeline() {
    if (!session) return;
    entries.show(rowsOf(session), context.search, row => on.has(row.kind));
  }

  function choose() {
    const {sessions} = context.store;
    session = sessions.find(one => one.key === wanted) ?? sessions.at(-1) ?? null;
    const isInList = list.node.contains(document.activeElement);
    node.dataset.level = wanted ? 'timeline' : 'list';
    // On a narrow page the timeline takes the place of the list.
    if (isInList && list.node.offsetParent === null) back.focus();
    if (!session) { heading.textContent = 'No session yet'; meta.textContent = ''; return entries.show([], ''); }
    heading.textContent = sessionTitle(session);
    meta.textContent = [sessionAbout(session), session.device && 'device ' + brief(session.device, 60), session.id && 'session ' + brief(session.id, 60)].filter(Boolean).join(' · ');
    why.href = '#/why/' + session.key;
    list.select(session.key);
  }

  return {
    node,
    forget() { listed = -1; details.forget(); entries.forget(); },
    open(key) { wanted = key; drawn = ''; details.node.hidden = true; untold.hidden = true; },
    update() {
      const {sessions} = context.store;
      const version = sessions.reduce((sum, one) => sum + one.version + 1, 0);
      if (version !== listed) { listed = version; list.set(sessions.toReversed()); }
      copy.disabled = sessions.length === 0;
      choose();
      const state = session ? `${session.key} ${session.version} ${context.search}` : '';
      if (state !== drawn) { drawn = state; showTimeline(); }
    },
  };
}

/** Beside a copied scenario: what the person may have to add to it. */
function showUntold(node, notes, hidden) {
  node.replaceChildren(make('h3', {}, 'About the copy'), make('ul', {}, ...notes.map(note => make('li', {}, note))),
                       make('button', {type: 'button', onclick: () => { node.hidden = true; hidden(); }}, 'Hide'));
  node.hidden = notes.length === 0;
}

function fillSession(button, session) {
  const first = session.start ?? session.stop;
  button.classList.toggle('bad', !session.start || (session.stop?.status ?? 0) >= 300);
  button.append(make('span', {class: 'mark', 'aria-hidden': 'true'}, session.stop ? '■' : '▶'),
                make('span', {class: 'title'}, sessionTitle(session)),
                make('span', {class: 'time'}, timeOf(first.time ?? first.at)),
                make('span', {class: 'about'}, sessionAbout(session)));
}
