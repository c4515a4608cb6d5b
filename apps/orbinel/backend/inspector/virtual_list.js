import {make} from './dom.js';

const beyond = 6;  // rows kept ready on both sides of what is seen

/**
 * A long list of rows of one height, of which only those in sight exist.
 *
 * One row is in the order of the Tab key; the arrow keys, Home, End and the page keys move from there. `fill` puts the
 * content of an item into a row's button; items are told apart by their `key`.
 */
export class VirtualList {
  constructor({label, rowHeight, fill, chosen, newestFirst = false}) {
    Object.assign(this, {rowHeight, fill, chosen, newestFirst});
    this.items = [];
    this.rows = new Map();  // index -> li
    this.active = 0;
    this.selected = null;   // key
    this.list = make('ol', {class: 'rows', 'aria-label': label});
    this.node = make('div', {class: 'scroller'}, this.list);
    this.node.addEventListener('scroll', () => this.later(), {passive: true});
    this.node.addEventListener('keydown', event => this.pressed(event));
    this.observer = new ResizeObserver(() => this.later());
    this.observer.observe(this.node);
  }

  /** Shows other items. Where newest come first and the person reads further down, what is read stays in place. */
  set(items) {
    const top = this.node.scrollTop;
    const first = this.items[Math.floor(top / this.rowHeight)];
    const activeKey = this.items[this.active]?.key;
    const held = this.node.contains(document.activeElement);
    this.items = items;
    for (const row of this.rows.values()) row.remove();
    this.rows.clear();
    this.list.style.height = items.length * this.rowHeight + 'px';
    if (this.newestFirst && top > 0 && first) {
      const place = items.findIndex(item => item.key === first.key);
      if (place >= 0) this.node.scrollTop = place * this.rowHeight + (top % this.rowHeight);
    }
    const place = activeKey === undefined ? -1 : items.findIndex(item => item.key === activeKey);
    this.active = place >= 0 ? place : Math.max(0, items.findIndex(item => item.key === this.selected));
    this.draw();
    if (held) this.rows.get(this.active)?.firstChild.focus({preventScroll: true});
  }

  select(key) {
    this.selected = key;
    const place = this.items.findIndex(item => item.key === key);
    if (place >= 0) this.active = place;
    for (const [index, row] of this.rows) this.mark(index, row);
  }

  reveal() {
    const top = this.active * this.rowHeight;
    const seen = this.node.clientHeight;
    if (top < this.node.scrollTop) this.node.scrollTop = top;
    else if (top + this.rowHeight > this.node.scrollTop + seen) this.node.scrollTop = top + this.rowHeight - seen;
    this.draw();
  }

  later() {
    if (this.waiting) return;
    this.waiting = true;
    requestAnimationFrame(() => { this.waiting = false; this.draw(); });
  }

  draw() {
    const from = Math.max(0, Math.floor(this.node.scrollTop / this.rowHeight) - beyond);
    const to = Math.min(this.items.length, Math.ceil((this.node.scrollTop + this.node.clientHeight) / this.rowHeight) + beyond);
    const needed = new Set();
    for (let i = from; i < to; ++i) needed.add(i);
    if (this.active < this.items.length) needed.add(this.active);  // so that it keeps the focus
    for (const [index, row] of this.rows) {
      if (!needed.has(index)) { row.remove(); this.rows.delete(index); }
    }
    for (const index of needed) if (!this.rows.has(index)) this.rows.set(index, this.put(index));
  }

  put(index) {
    const item = this.items[index];
    const button = make('button', {type: 'button', class: 'row', onclick: () => this.choose(index)});
    this.fill(button, item);
    const row = make('li', {'aria-posinset': index + 1, 'aria-setsize': this.items.length}, button);
    row.style.transform = `translateY(${index * this.rowHeight}px)`;
    row.style.height = this.rowHeight + 'px';
    this.mark(index, row);
    // In the order of the list, which is what a screen reader reads.
    let next = null;
    for (const [other, node] of this.rows) {
      if (other > index && (next === null || other < next.other)) next = {other, node};
    }
    this.list.insertBefore(row, next ? next.node : null);
    return row;
  }

  mark(index, row) {
    const isSelected = this.items[index]?.key === this.selected;
    row.firstChild.tabIndex = index === this.active ? 0 : -1;
    if (isSelected) row.firstChild.setAttribute('aria-current', 'true');
    else row.firstChild.removeAttribute('aria-current');
  }

  choose(index) {
    this.active = index;
    this.select(this.items[index].key);
    this.chosen(this.items[index]);
  }

  pressed(event) {
    const page = Math.max(1, Math.floor(this.node.clientHeight / this.rowHeight) - 1);
    const moves = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity};
    const by = moves[event.key];
    if (by === undefined || this.items.length === 0 || event.altKey || event.ctrlKey || event.metaKey) return;
    event.preventDefault();
    this.active = Math.min(this.items.length - 1, Math.max(0, this.active + by));
    this.reveal();
    for (const [index, row] of this.rows) this.mark(index, row);
    this.rows.get(this.active).firstChild.focus({preventScroll: true});
  }
}
