import {brief, count, isObject, listOr, numberOr, objectOr, sizeOf, textOr} from './format.js';

// The entries of a session's timeline, and what a list shows of each kind of entry.

export const kinds = {request: 'Requests', event: 'Events', message: 'Messages', feed: 'Feed', log: 'Log'};

const closings = {0: 'by its page', 6: 'by its close button', 7: 'because the keyboard was open, or by a link', 8: 'never shown: the control group',
                  9: 'by a tap on its page', 13: 'by its close button'};
const order = {request: 1, event: 2, message: 3, feed: 4, log: 5};

/** Oldest first, by the device's clock. */
export function rowsOf(session) {
  const rows = [...session.requests.filter(request => !request.feed), ...session.logs, ...session.feeds, ...eventRows(session), ...blockedRows(session)];
  const shift = session.requests.find(request => request.time !== undefined);
  const offset = shift ? shift.time - shift.at : 0;
  const placed = rows.map((row, i) => ({row, i, time: row.time ?? row.at + offset, order: rankOf(row, session)}));
  placed.sort((a, b) => a.time - b.time || a.order - b.order || a.i - b.i);
  return placed.map(({row, time}) => { row.shownTime = time; return row; });
}

function rankOf(row, session) {
  if (row === session.start) return 0;
  if (row === session.stop) return 9;
  // Within one second: what was asked before the start stands before it.
  if (row.kind === 'request' && session.start && row.id < session.start.id) return -1;
  return order[row.kind] ?? 9;
}

function eventRows(session) {
  if (session.eventRows?.stop === session.stop) return session.eventRows.rows;
  const rows = listOr(objectOr(session.stop?.payload).custom_events).filter(isObject).map((event, i) => ({
    key: `e${session.stop.id}-${i}`, kind: event.event_name === 'inapp_seen' ? 'message' : 'event', at: session.stop.at,
    time: numberOr(event.timestamp, undefined), name: textOr(event.event_name), parameters: event.event_params, data: event,
    closing: event.event_name === 'inapp_seen' ? closingOf(event.event_params) : undefined,
  }));
  session.eventRows = {stop: session.stop, rows};
  return rows;
}

function closingOf(parameters) {
  const {inapp_id: id, dismiss_type: type} = objectOr(parameters);
  return `Message ${brief(id, 20)} closed ${closings[type] ?? 'with reason ' + brief(type, 20)}`;
}

function blockedRows(session) {
  if (session.blockedRows?.stop === session.stop) return session.blockedRows.rows;
  const rows = listOr(objectOr(session.stop?.payload).blocked_inapps).filter(isObject).map((blocked, i) => ({
    key: `b${session.stop.id}-${i}`, kind: 'message', at: session.stop.at, time: numberOr(blocked.timestamp, undefined), data: blocked,
    closing: `Message ${brief(blocked.inapp_id, 20)} held back: the application hides messages`,
  }));
  session.blockedRows = {stop: session.stop, rows};
  return rows;
}

// --- What a row says ---

export function titleOf(row) {
  switch (row.kind) {
    case 'request': return (row.method === 'POST' ? '' : row.method + ' ') + row.path + (row.query ? '?' + row.query : '');
    case 'event': return row.name || 'event without a name';
    case 'message': return row.closing;
    case 'feed': return row.method || 'feed without a method';
    default: return row.message || 'line without a message';
  }
}

export function aboutOf(row) {
  switch (row.kind) {
    case 'request': return [row.status >= 300 && 'answered ' + row.status, row.problem, row.summary, sizeOf(row.size)].filter(Boolean).join(' · ');
    case 'event': return isObject(row.parameters) ? brief(row.parameters) : brief(listOr(row.parameters));
    case 'message': return brief(row.parameters ?? row.data);
    case 'feed': return brief(row.data ?? {});
    default: return [row.type, brief(row.attributes)].filter(Boolean).join(' · ');
  }
}

export function isBad(row) {
  return row.kind === 'request' ? row.status >= 300 || Boolean(row.problem) : Boolean(row.refused);
}

/** What the search looks in, made when it is first needed. */
export function textOf(row) {
  row.text ??= [titleOf(row), aboutOf(row), row.partner ?? '', JSON.stringify(row.payload ?? row.data ?? row.record ?? null)].join(' ').toLowerCase();
  return row.text;
}

export function sessionTitle(session) {
  const id = session.id.length > 12 ? session.id.slice(0, 8) + '…' : session.id;
  return `${session.partner || 'no partner'} · ${id || 'no session ID'}`;
}

export function sessionAbout(session) {
  if (!session.stop) return session.answer.sdk_disabled ? 'switched off by its start' : 'running';
  const stop = objectOr(session.stop.payload);
  const messages = listOr(stop.inapp_logs).length;
  return [count(listOr(stop.custom_events).length, 'event'), messages && count(messages, 'message'),
          count(numberOr(stop.session_duration, 0), 'second'), session.stop.status >= 300 && 'stop refused'].filter(Boolean).join(', ');
}
