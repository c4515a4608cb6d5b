import {isObject, listOr, numberOr, objectOr, textOr} from './format.js';

// What the backend received, put together into sessions. Device time is that of the "ts" header: a device's clock need
// not be this machine's.

const paths = {
  start: '/api/v3/session/start',
  stop: '/api/v3/session/stop',
  identity: '/api/identity/v3/get',
  logs: ['/api//logging/sdk/v2', '/api/logging/sdk/v1'],
  wizardInit: '/api/wizard/v1/init_new_integration',
  wizardFeed: '/api/wizard/v1/feed_data',
};
const most = 10_000;  // requests, feeds and log lines kept, as the backend does

export class Store {
  constructor() {
    this.listeners = new Set();
    this.forget();
  }

  forget() {
    this.run = null;
    this.requests = [];
    this.sessions = [];
    this.logs = [];
    this.feeds = [];
    this.partners = new Set();
    this.bySessionId = new Map();
    this.openByDevice = new Map();   // partner and device -> the session that runs
    this.waiting = new Map();        // partner and device -> requests before its first start
    this.deviceByToken = new Map();  // of the wizard
    this.latestByDevice = new Map(); // partner and device -> its last session
  }

  /** Takes a portion of the stream. */
  take({run, requests}) {
    if (this.run !== null && run !== this.run) this.forget();
    this.run = run;
    for (const request of requests) this.add(request);
    trim(this.requests);
    trim(this.logs);
    trim(this.feeds);
    for (const listener of this.listeners) listener();
  }

  add(request) {
    request.key = 'r' + request.id;
    request.run = this.run;
    request.kind = 'request';
    request.time = numberOr(Number(headerOf(request, 'ts') ?? NaN), undefined);
    this.requests.push(request);
    if (request.partner) this.partners.add(request.partner);
    if (request.path === paths.start && request.method === 'POST') this.start(request);
    else if (request.path === paths.stop && request.method === 'POST') this.stop(request);
    else if (paths.logs.includes(request.path)) this.takeLogs(request);
    else this.attach(request);
  }

  // --- Sessions ---

  start(request) {
    const answer = parsed(request.answer);
    const session = this.newSession(request, textOr(objectOr(answer).session_id));
    session.start = request;
    session.answer = objectOr(answer);
    const device = placeOf(request, deviceOf(request));
    this.link(session, this.latestByDevice.get(device));
    this.latestByDevice.set(device, session);
    this.openByDevice.set(device, session);
    for (const place of [device, placeOf(request, '')]) {
      for (const earlier of this.waiting.get(place) ?? []) this.give(session, earlier);
      this.waiting.delete(place);
    }
    session.requests.sort((a, b) => a.id - b.id);
    this.give(session, request);
  }

  /** To the session before it on the device, which a login or a change of the partner may have ended. */
  link(session, before) {
    if (!before) return;
    session.before = {partner: before.partner};
    before.after = {partner: session.partner};
    if (objectOr(session.start.payload).reason === 'login') session.startedBy = before.requests.findLast(request => request.path === paths.identity);
  }

  newSession(request, id) {
    const session = {key: `s${request.id}-${this.run}`, id, partner: request.partner, device: deviceOf(request),
                     start: null, stop: null, before: null, after: null, startedBy: null, answer: {}, requests: [], logs: [], feeds: [], version: 0};
    this.sessions.push(session);
    if (this.sessions.length > most) this.forgetSession(this.sessions.shift());
    if (id) this.bySessionId.set(id, session);
    return session;
  }

  forgetSession(session) {
    if (this.bySessionId.get(session.id) === session) this.bySessionId.delete(session.id);
    for (const places of [this.openByDevice, this.latestByDevice]) {
      for (const [place, known] of places) if (known === session) places.delete(place);
    }
  }

  stop(request) {
    const id = textOr(objectOr(request.payload).session_id);
    const device = placeOf(request, deviceOf(request));
    const known = this.bySessionId.get(id);
    // A refused stop comes again. One without a session that is known here: its start never came through.
    const awaited = known && (!known.stop || known.stop.status >= 300);
    const session = awaited ? known : id ? this.newSession(request, id)
                                                      : this.openByDevice.get(device) ?? this.newSession(request, '');
    if (request.status < 300 || !session.stop) session.stop = request;
    if (this.openByDevice.get(device) === session) this.openByDevice.delete(device);
    this.give(session, request);
  }

  give(session, request) {
    push(session.requests, request);
    request.session = session;
    ++session.version;
    if (request.feed) push(session.feeds, request.feed);
  }

  /** A request that speaks of no session belongs to its device's: the one that runs, or the one that is about to. */
  attach(request) {
    if (request.path === paths.wizardInit) this.deviceByToken.set(tokenOf(request), deviceOf(request));
    if (request.path === paths.wizardFeed) this.takeFeed(request);
    const device = deviceOf(request) || this.deviceByToken.get(tokenOf(request)) || '';
    const place = placeOf(request, device);
    const session = this.openByDevice.get(place) ?? (device ? undefined : this.latestOf(request.partner));
    if (session) return this.give(session, request);
    const waiting = this.waiting.get(place) ?? [];
    waiting.push(request);
    this.waiting.set(place, waiting.slice(-100));
  }

  latestOf(partner) {
    for (let i = this.sessions.length - 1; i >= 0 && i > this.sessions.length - 50; --i) {
      if (this.sessions[i].partner === partner && !this.sessions[i].stop) return this.sessions[i];
    }
    return undefined;
  }

  // --- Feeds and logs ---

  takeFeed(request) {
    const payload = objectOr(request.payload);
    request.feed = {key: 'f' + request.id, kind: 'feed', at: request.at, time: numberOr(objectOr(payload.data).timestamp, undefined),
                    request, method: textOr(payload.method), data: payload.data, token: tokenOf(request), partner: request.partner,
                    refused: request.status >= 300};
    this.feeds.push(request.feed);
  }

  takeLogs(request) {
    listOr(objectOr(request.payload).logs).filter(isObject).forEach((record, i) => {
      const session = this.bySessionId.get(textOr(record.session_id));
      const line = {key: `l${request.id}-${i}`, kind: 'log', at: request.at, time: numberOr(record.timestamp, undefined), request,
                    type: textOr(record.log_type), level: textOr(record.log_level), message: textOr(record.message),
                    attributes: objectOr(record.custom_attributes), record, partner: request.partner, session};
      this.logs.push(line);
      if (session) { push(session.logs, line); ++session.version; }
    });
    this.attach(request);
  }
}

/** Whether a session's key is of that run: ids begin at 1 again in each. */
export function isOfRun(key, run) { return key.endsWith('-' + run); }

export function headerOf(request, name) {
  const found = Object.entries(objectOr(request.headers)).find(([other]) => other.toLowerCase() === name.toLowerCase());
  return found?.[1];
}

function push(list, entry) { if (list.push(entry) > most) list.shift(); }

function trim(list) { if (list.length > most) list.splice(0, list.length - most); }

function parsed(text) {
  try {
    return text ? JSON.parse(text) : null;
  } catch {
    return null;
  }
}

function tokenOf(request) { return textOr(headerOf(request, 'Authorization')).replace(/^Bearer /, ''); }

function deviceOf(request) {
  const payload = objectOr(request.payload);
  const page = /^\/templates\/[^/]+\/([^/]+)\//.exec(request.path);
  return textOr(payload.udid) || textOr(objectOr(payload.target).udid) || (page ? page[1] : '');
}

/** Pages of messages name no partner. */
function placeOf(request, device) { return device || 'of ' + request.partner; }
