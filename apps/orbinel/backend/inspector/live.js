import {kindFilter, make} from './dom.js';
import {Details} from './details.js';
import {EntryList} from './entry_list.js';

const otherTypes = 'other types';
const nothingYet = 'Nothing has come yet. The feed comes from a device that is connected to the wizard, the diagnostic log where the start switches it on (Answers).';

/** What devices tell the wizard and the diagnostic log, newest first, as it comes. */
export function liveView(context) {
  const details = new Details();
  const entries = new EntryList({label: 'Feed and log, newest first', details, newestFirst: true, ifNone: nothingYet});
  const on = new Set(['feed', 'error', 'info']);
  const type = make('select', {'aria-label': 'Log type', onchange: () => view.update()});
  const filter = kindFilter('Kinds', {feed: 'Feed', error: 'Errors', info: 'Infos'}, on, () => view.update());

  const passes = row => (row.kind === 'feed' ? on.has('feed') : on.has(row.level === 'error' ? 'error' : 'info')) &&
                        (!type.value || row.kind === 'feed' || (row.type || otherTypes) === type.value);

  const view = {
    node: make('div', {class: 'panes two'},
      make('section', {class: 'pane', 'aria-label': 'Feed and log'}, make('div', {class: 'filters'}, filter, type), entries.node), details.node),
    forget() { details.forget(); entries.forget(); },
    update() {
      const {logs, feeds} = context.store;
      offerTypes(type, logs);
      const rows = [...logs, ...feeds].sort((a, b) => b.request.id - a.request.id || (a.key < b.key ? 1 : -1));
      entries.show(rows, context.search, passes);
    },
  };
  return view;
}

function offerTypes(select, logs) {
  const types = [...new Set(logs.map(line => line.type || otherTypes))].sort();
  if (select.dataset.types === JSON.stringify(types)) return;
  const before = select.value;
  select.dataset.types = JSON.stringify(types);
  select.replaceChildren(make('option', {value: ''}, 'All log types'), ...types.map(one => make('option', {value: one}, one)));
  select.value = types.includes(before) ? before : '';
}
