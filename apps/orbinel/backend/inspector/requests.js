import {make} from './dom.js';
import {Details} from './details.js';
import {EntryList} from './entry_list.js';

/** Every request, newest first. */
export function requestsView(context) {
  const details = new Details();
  const entries = new EntryList({label: 'Requests, newest first', details, newestFirst: true});
  return {
    node: make('div', {class: 'panes two'}, make('section', {class: 'pane', 'aria-label': 'Requests'}, entries.node), details.node),
    forget() { details.forget(); entries.forget(); },
    update() { entries.show(context.store.requests.toReversed(), context.search); },
  };
}
