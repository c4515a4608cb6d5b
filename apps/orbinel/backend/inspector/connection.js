const again = 2000;      // milliseconds to the next try after a refusal
const tooMany = 503;
const lost = 'the backend does not answer';

/**
 * Follows the stream of requests while the page is seen: a browser has few connections for all pages of one server, and
 * those that nobody looks at would hold them. A page that is seen again goes on where it was.
 *
 * `tell` gets what is wrong, a clause, or an empty text when all is well.
 */
export function followRequests(store, tell) {
  let stream = null;
  let place = '';  // the id of the last portion

  function connect() {
    if (document.hidden || stream) return;
    const opened = new EventSource('/inspect/stream' + (place && '?since=' + place));
    stream = opened;
    opened.onopen = () => tell('');
    opened.onmessage = event => { place = event.lastEventId; store.take(JSON.parse(event.data)); };
    opened.onerror = async () => {
      // A refused stream is not tried again by the browser, which does not say why it was refused either.
      if (opened.readyState !== EventSource.CLOSED) return tell(lost);
      const why = await refusal();
      if (stream === opened) tell(why);
      setTimeout(() => { if (stream === opened) { stream = null; connect(); } }, again);
    };
  }

  document.addEventListener('visibilitychange', () => {
    if (!document.hidden) return connect();
    stream?.close();
    stream = null;
  });
  connect();
}

async function refusal() {
  const asked = new AbortController();
  const limit = setTimeout(() => asked.abort(), again);
  try {
    return (await fetch('/inspect/stream', {signal: asked.signal})).status === tooMany ? 'too many pages are open' : lost;
  } catch {
    return lost;
  } finally {
    clearTimeout(limit);
    asked.abort();
  }
}
