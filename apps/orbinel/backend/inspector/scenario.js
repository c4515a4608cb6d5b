import {isObject, listOr, numberOr, objectOr, textOr} from './format.js';
import {headerOf} from './store.js';
import {presetOf, contentReads, deviceOf, deviceSteps, readsBeforeTheStart} from './scenario_beginning.js';
import {EventSteps} from './scenario_events.js';
import {messagePlan} from './scenario_messages.js';
import {call, isText, Steps} from './scenario_steps.js';
import {asksForIdentity, attributeSteps, consentCalls, identifiersOf, loginSteps, user} from './scenario_user.js';

// A session as a scenario that `orbinel play` accepts: what lay in the stores, its start, what the application, the
// person and the pages of messages did, its stop.

const wizardPath = '/api/wizard/v1/init_new_integration';
const testDevicePath = '/api/v1/test_device/add';
const latest = 4e9;  // seconds since 1970
const active = {notify: 'UIApplicationDidBecomeActiveNotification'};
const background = {notify: 'UIApplicationDidEnterBackgroundNotification'};
const settle = {settle: 5};

/** The scenario, and in plain words what it cannot tell because it did not arrive. */
export function scenarioOf(session) {
  const notes = new Set();
  const begin = beginOf(session);
  const copy = {session, notes, begin, stop: objectOr(session.stop?.payload), consents: consentCalls(session.requests)};
  copy.steps = new Steps(begin - secondsBefore(copy));
  copy.makeEvents = new EventSteps({answer: session.answer, deliveries: deliveriesOf(session), notes});
  const start = copy.steps.now;
  copy.events = eventsOf(session, begin);
  addBeginning(copy);
  addMiddle(copy);
  if (session.stop) addEnd(copy);
  else addOpenEnd(copy);
  noteRest(copy);
  return {scenario: {name: `a session of ${session.partner || 'nobody'}${session.id ? ', ' + session.id : ''}`, clock: {start},
                     ...deviceOf(session), ...presetOf(session), steps: copy.steps.list},
          notes: [...notes]};
}

function beginOf({start, stop}) {
  const isTime = time => time >= 0 && time < latest;
  if (isTime(start?.time)) return Math.floor(start.time);
  const {timestamp, session_duration: seconds} = objectOr(stop?.payload);
  return [timestamp - seconds, stop?.time].map(Math.floor).find(isTime) ?? Math.floor((start ?? stop).at);
}

/** A session that did not begin by a launch counts its seconds from the launch before it. */
function secondsBefore({session, stop, begin}) {
  const own = numberOr(stop.timestamp, begin) - begin;
  const before = numberOr(stop.session_duration, 0) - own;
  return prelude(session) && before > 0 && before < 86400 ? Math.floor(before) : 0;
}

/** Those of the stop; of a running session, what the wizard was told. `time` never goes back. */
function eventsOf(session, begin) {
  const fed = () => session.feeds.filter(feed => isObject(feed.data) && isText(feed.data.event_name)).map(feed => ({
    ...feed.data, event_params: Object.fromEntries(listOr(feed.data.event_params).filter(isObject).map(one => [one.name, one.value]))}));
  const events = session.stop ? listOr(objectOr(session.stop.payload).custom_events).filter(isObject) : fed();
  let time = begin;
  return events.map(event => {
    time = Math.max(time, numberOr(event.timestamp, time));
    return {name: textOr(event.event_name), parameters: objectOr(event.event_params), time};
  });
}

/** A test device is told of while the start is on its way, by the same activation: either may arrive first. */
const isBefore = (request, session) => Boolean(session.start) && (request.id < session.start.id || request.path === testDevicePath);

// --- The beginning ---

function initialisation(partner) {
  return call('initWithLaunchOptions:partnerName:appGroup:customEndpoint:', null, partner || 'acme', 'group.acme', '${endpoint}');
}

function addBeginning(copy) {
  const {session, steps, stop} = copy;
  // Fetching the user empties its attributes: before the start where a login or the start put some there.
  const early = 'mls' in objectOr(stop.user_attributes) || session.startedBy;
  if (early) steps.add({...call('getCurrentUser'), as: user});
  addStart(copy);
  if (!early) steps.add({...call('getCurrentUser'), as: user});
  const attributes = attributeSteps(session, stop);
  steps.add(...deviceSteps(stop), ...contentReads(session, stop), ...attributes);
  if (attributes.length > 0) copy.notes.add('When the user’s attributes were set does not arrive: the copy sets them at its beginning.');
}

/** What ended the session before and so began this one: {partner, steps}. Nothing where it was a launch. */
function prelude(session) {
  const reason = textOr(objectOr(session.start?.payload).reason);
  const identifiers = identifiersOf(session.startedBy);
  if (reason === 'login' && identifiers) return {partner: session.partner, steps: loginSteps(identifiers, 'first-identifiers'), by: 'a login'};
  if (reason !== 'reinit' || !session.before) return null;
  return {partner: session.before.partner, steps: [call('reinitWithPartnerName:', session.partner), settle], by: 'a change of the partner'};
}

function addStart(copy) {
  const {session, steps, notes} = copy;
  const before = prelude(session);
  if (before) {
    steps.add(initialisation(before.partner), active, settle);
    steps.moveTo(copy.begin);
    steps.add(...before.steps, {mark: true});
    notes.add(`The session began by ${before.by}: the copy plays a short session before it.`);
    return;
  }
  steps.add(initialisation(session.partner));
  for (const request of session.requests.filter(one => isBefore(one, session))) {
    steps.add(...(copy.consents.has(request) ? [copy.consents.get(request)] : otherSteps(request)));
  }
  addEventsBeforeTheStart(copy);
  steps.add(...readsBeforeTheStart(session, copy.stop), active, settle);
}

function addEventsBeforeTheStart(copy) {
  const start = copy.events.findIndex(event => event.name === 'session_start');
  const early = copy.events.splice(0, Math.max(0, start));
  for (const {name, parameters} of early) copy.steps.add(...copy.makeEvents.of(name, parameters));
}

/** How each push came, where the log says it. */
function deliveriesOf(session) {
  const ways = {'didReceiveNotificationResponse:withCompletionHandler': 'response', 'willPresentNotification:withCompletionHandler': 'present'};
  return session.logs.filter(line => Object.hasOwn(ways, line.message)).map(line => ways[line.message]);
}

// --- The middle ---

/** Events in their order; in between, by the second, what requests tell. */
function addMiddle(copy) {
  const {session, events, steps} = copy;
  const plan = messagePlan(session, events, copy.notes);
  const moments = [...requestMoments(copy), ...plan.moments].sort((a, b) => a.time - b.time);
  const doMoments = isDue => {
    while (moments.length > 0 && isDue(moments[0])) {
      const {time, act} = moments.shift();
      steps.moveTo(time);
      act(steps);
    }
  };
  events.forEach(({name, parameters, time}, place) => {
    doMoments(moment => moment.time < time || (moment.opens && moment.time === time));
    steps.moveTo(time);
    for (const act of plan.before.get(place) ?? []) act(steps);
    if (!plan.causedByPages.has(place)) steps.add(...copy.makeEvents.of(name, parameters));
    for (const act of plan.after.get(place) ?? []) act(steps);
  });
  doMoments(() => true);
}

function requestMoments(copy) {
  const {session, steps} = copy;
  let time = steps.now;
  let logins = 0;
  let ofTheLibrary = session.answer.reset_iid ? 1 : 0;  // the start had the identity asked for once more
  const moments = [];
  for (const request of session.requests) {
    if (request === session.stop || request === session.start || isBefore(request, session)) continue;
    time = Math.max(time, Math.min(latest, request.time ?? time));
    const act = what => moments.push({time, opens: opensSomething(request), act: into => into.add(...what)});
    const identifiers = identifiersOf(request);
    if (copy.consents.has(request)) act([copy.consents.get(request)]);
    else if (asksForIdentity(request) && ofTheLibrary > 0) --ofTheLibrary;
    else if (identifiers) act(loginSteps(identifiers, 'identifiers-' + ++logins));
    else act([...otherSteps(request), ...copy.makeEvents.refusedRecommendation(request)]);
  }
  const link = textOr(copy.stop.universal_link);
  if (link) moments.push({time: moments.at(-1)?.time ?? time, act: into => into.add({user_activity: withEndpoint(session, link)}, settle)});
  return moments;
}

/** Stands before events of the same second, which come because of it. */
function opensSomething({path, payload}) {
  const {gdpr_consent: gdpr, mobile_gdpr_consent: mobile} = objectOr(payload);
  return gdpr === true || mobile === true || path === wizardPath || path === testDevicePath;
}

function otherSteps(request) {
  const payload = objectOr(request.payload);
  const date = seconds => (numberOr(seconds, -1) >= 0 && seconds < latest ? {$date: seconds} : null);
  switch (request.path) {
    case '/api/message_center/v2/sdk/get':
      return [call('getMessageCenterDataWithLimit:startDate:endDate:success:', Number.isInteger(payload.limit) ? Math.trunc(payload.limit) | 0 : 10,
                   date(payload.start_date), date(payload.end_date), null), settle];
    case testDevicePath: return [call('handleUrl:', 'acme://test_device/' + textOr(payload.token)), settle];
    case wizardPath:
      return [call('handleUrl:', 'acme://connect_wizard/' + textOr(headerOf(request, 'Authorization')).replace(/^Bearer /, '')), settle];
    default: return [];
  }
}

/** The backend that a copy is played against has an address of its own. */
function withEndpoint(session, url) {
  const origin = 'http://' + headerOf(session.start ?? session.stop, 'Host');
  return url.startsWith(origin + '/') ? '${endpoint}' + url.slice(origin.length) : url;
}

// --- The end ---

function addEnd(copy) {
  const {session, steps, stop, notes} = copy;
  const reason = textOr(stop.reason);
  steps.moveTo(Math.min(latest, numberOr(stop.timestamp, steps.now)));
  if (objectOr(stop.user_attributes).mls === false && reason !== 'login') {
    steps.add({...call('logout'), on: user});
    notes.add('When the user was logged out does not arrive: the copy does it at its end.');
  }
  if (reason === 'reinit') {
    steps.add(call('reinitWithPartnerName:', session.after?.partner || 'another'));
  } else if (reason !== 'login' || !session.requests.some(request => !isBefore(request, session) && identifiersOf(request))) {
    steps.add(background);
  }
  steps.add(settle, {expect: {in: 'request', count: 1, where: {'/url': {contains: 'session/stop'}}}});
}

/** As long as something of it came. */
function addOpenEnd({session, steps, notes}) {
  steps.moveTo(Math.max(0, ...session.requests.map(request => request.time ?? 0).filter(time => time < latest)));
  steps.add(settle);
  notes.add('The session still runs: what it records comes with its stop, and the copy has none.');
}

function noteRest({session, stop, notes}) {
  if (Object.keys(objectOr(stop.content_logs)).length > 0) {
    notes.add('Of content only what a campaign varied arrives: other reads, and default values, are not known.');
  }
  if (session.requests.some(request => request.status >= 300)) {
    notes.add('Requests that the backend refused are answered in the copy, unless it is told to refuse them again.');
  }
  if (session.logs.length === 0 && listOr(stop.inapp_logs).length > 0) {
    notes.add('No diagnostic log came: messages that closed without a trace are not known.');
  }
}
