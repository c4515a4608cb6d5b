import {definitions, make} from './dom.js';
import {answerLimit, noAnswer} from './ask.js';
import {brief, momentOf, objectOr, sizeOf} from './format.js';
import {jsonView} from './json_view.js';
import {titleOf} from './rows.js';

/** The panel that shows one entry whole. On a narrow page it covers the rest until it is closed. */
export class Details {
  constructor() {
    this.close = make('button', {type: 'button', class: 'close', onclick: () => this.hide()}, 'Close');
    this.content = make('div', {class: 'inside'});
    this.node = make('section', {class: 'details', 'aria-label': 'Details', hidden: true}, this.close, this.content);
    this.node.addEventListener('keydown', event => { if (event.key === 'Escape') this.hide(); });
  }

  show(row) {
    this.cameFrom = document.activeElement;
    this.content.replaceChildren(make('h2', {}, titleOf(row)), ...contentOf(row));
    this.node.hidden = false;
    this.node.scrollTop = 0;
    if (getComputedStyle(this.node).position === 'fixed') this.close.focus();
  }

  /** What is shown is not there any more. */
  forget() {
    if (this.node.contains(document.activeElement)) document.getElementById('main').focus();
    this.node.hidden = true;
    this.content.replaceChildren();
  }

  hide() {
    this.node.hidden = true;
    if (this.cameFrom?.isConnected) this.cameFrom.focus();
    else document.getElementById('main').focus();
  }
}

function contentOf(row) {
  if (row.kind === 'request') return requestContent(row);
  const value = row.record ?? row.data ?? {};
  return [definitions([['Time on the device', momentOf(row.shownTime ?? row.time)], ['Arrived', momentOf(row.at)], ['Level', row.level],
                       ['Type', row.type], ['Token', row.token], ['Partner', row.partner]]),
          make('h3', {}, 'All of it'), jsonView(value)];
}

function requestContent(request) {
  const nodes = [
    definitions([['Arrived', momentOf(request.at)], ['Time on the device', momentOf(request.time)], ['Size', sizeOf(request.size)],
                 ['Answered', request.status], ['Partner', request.partner], ['Says', request.summary]])];
  if (request.problem) nodes.push(make('p', {class: 'problem'}, request.problem));
  nodes.push(make('h3', {}, 'Payload'), request.payload === null ? make('p', {}, 'none') : jsonView(request.payload, request.size),
             make('h3', {}, 'Headers'), definitions(Object.entries(objectOr(request.headers)).map(([name, value]) => [name, brief(value, 2000)])));
  if (request.answer) nodes.push(make('h3', {}, 'Answer'), answerView(request.answer));
  nodes.push(rawBody(request));
  return nodes;
}

function answerView(text) {
  try {
    return jsonView(JSON.parse(text), text.length);
  } catch {
    return make('pre', {tabindex: 0}, brief(text, 2000));
  }
}

/** Asked for when it is opened: an envelope is as long as its payload again. */
function rawBody(request) {
  const details = make('details', {class: 'raw'}, make('summary', {}, 'Body as it came'));
  details.addEventListener('toggle', async () => {
    if (!details.open || details.childElementCount > 1) return;
    const text = make('pre', {tabindex: 0}, 'loading');
    details.append(text);
    try {
      const response = await fetch(`/inspect/requests?since=${request.id - 1}&limit=1`, {signal: AbortSignal.timeout(answerLimit)});
      const isOfTheSameRun = response.headers.get('X-Inspect-Run') === String(request.run);
      const [found] = await response.json();
      text.textContent = isOfTheSameRun && found?.id === request.id ? found.body.slice(0, 200_000) || 'empty' : 'The backend has forgotten it.';
    } catch (wrong) {
      text.textContent = noAnswer(wrong);
    }
  });
  return details;
}
