import {make, say} from './dom.js';
import {timeOf} from './format.js';
import {aboutOf, isBad, kinds, textOf, titleOf} from './rows.js';
import {filterInSlices} from './slices.js';
import {VirtualList} from './virtual_list.js';

const marks = {request: '⇄', event: '●', message: '▣', feed: '»', log: '≡'};

/** A list of timeline entries that a search and a choice of kinds narrow down. */
export class EntryList {
  constructor({label, details, newestFirst = false, chosen, ifNone = 'Nothing has come yet.'}) {
    this.list = new VirtualList({label, rowHeight: 56, fill, newestFirst, chosen: row => { details.show(row); chosen?.(row); }});
    this.count = make('p', {class: 'count'});
    this.none = make('p', {class: 'none'});
    this.ifNone = ifNone;
    this.node = make('div', {class: 'entries'}, this.count, this.none, this.list.node);
    this.searched = '';
  }

  forget() {
    this.list.selected = null;
    this.list.node.scrollTop = 0;
  }

  show(rows, search, passes = () => true) {
    this.cancel?.();
    this.cancel = filterInSlices(rows, row => passes(row) && (!search || textOf(row).includes(search)), found => {
      this.list.set(found);
      this.none.textContent = found.length > 0 ? '' : rows.length > 0 ? 'None of the entries passes the search and the choice of kinds.' : this.ifNone;
      if (search !== this.searched) say(`${found.length} found`);
      this.searched = search;
      this.count.textContent = found.length === rows.length ? `${rows.length.toLocaleString('en')} entries`
                                                            : `${found.length.toLocaleString('en')} of ${rows.length.toLocaleString('en')} entries`;
    });
  }
}

function fill(button, row) {
  button.classList.add('kind-' + row.kind);
  button.classList.toggle('bad', isBad(row));
  button.classList.toggle('edge', row === row.session?.start || row === row.session?.stop);
  button.append(make('span', {class: 'mark', 'aria-hidden': 'true'}, marks[row.kind]),
                make('span', {class: 'unseen'}, kinds[row.kind] + ': '),
                make('span', {class: 'title'}, titleOf(row).slice(0, 300)),
                make('span', {class: 'time'}, timeOf(row.shownTime ?? row.time ?? row.at)),
                make('span', {class: 'about'}, aboutOf(row).slice(0, 300)));
}
