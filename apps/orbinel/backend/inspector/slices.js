// Work over long lists, in slices that leave the page responsive.

const slice = 8;    // milliseconds
const many = 1000;  // items: to have put them together took its time already

/** Calls `done` with the items that pass, unless it is cancelled by what it returns; before it returns where they are few. */
export function filterInSlices(items, passes, done) {
  const found = [];
  let at = 0;
  let cancelled = false;
  const go = () => {
    if (cancelled) return;
    const end = performance.now() + slice;
    while (at < items.length) {
      if (passes(items[at])) found.push(items[at]);
      ++at;
      if (performance.now() > end) return void setTimeout(go);
    }
    done(found);
  };
  if (items.length > many) setTimeout(go);
  else go();
  return () => { cancelled = true; };
}

/** Calls `act` once, soon, however often it is asked for. */
export function coalesced(act, wait = 60) {
  let due = false;
  return () => {
    if (due) return;
    due = true;
    setTimeout(() => { due = false; act(); }, wait);
  };
}
