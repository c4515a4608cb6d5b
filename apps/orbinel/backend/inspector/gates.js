import {brief, isObject, listOr, objectOr, textOr} from './format.js';

// Why a campaign was not shown. A message passes these gates in this order; the log says at which one it stopped, and
// where the log is silent, the events of the session say it.

export const gates = {
  trigger: 'Trigger', conditions: 'Conditions', count: 'Count', screen: 'Screen', priority: 'Priority', allowed: 'Allowed',
  cap: 'Cap', group: 'Test group', page: 'Page', moment: 'Moment',
};

const names = Object.keys(gates);
const controlGroup = -1;
const lowestPriority = 50;  // of an event-based campaign that is ever chosen by itself
const keyboardOrLink = 7;
const control = 8;

/** The delivered campaigns, those that are connected to another one included. */
export function campaignsOf(answer) {
  const first = listOr(answer.inapps).filter(isObject);
  return [...first, ...first.flatMap(one => listOr(objectOr(one.content).connected_inapps).filter(isObject))];
}

const idOf = campaign => brief(campaign.inapp_id ?? '', 80);  // or of a line about it
const wholeOr = (value, otherwise) => {
  const number = typeof value === 'string' && value.trim() ? Number(value) : value;
  return Number.isInteger(number) ? number : otherwise;
};
export const countOf = campaign => wholeOr(campaign.trigger_count, 1);
export const priorityOf = campaign => wholeOr(campaign.priority, 0);
export const isEventBased = campaign => campaign.show_type === 'event';

// --- Conditions ---

const number = value => {
  if (typeof value === 'boolean') return value ? 1 : 0;
  const read = typeof value === 'string' && value.trim() ? Number(value) : value;
  return typeof read === 'number' && Number.isFinite(read) ? read : undefined;
};
const plain = value => (typeof value === 'boolean' ? Number(value) : value);
const equal = (a, b) => (typeof a === 'object' ? JSON.stringify(a) === JSON.stringify(b) : plain(a) === plain(b));
const comparable = a => ['string', 'number', 'boolean'].includes(typeof a);
const compared = compare => (a, b) => typeof a === 'number' && number(b) !== undefined && compare(a, number(b));
const texts = compare => (a, b) => typeof a === 'string' && typeof b === 'string' && compare(a.toLowerCase(), b.toLowerCase());

// "gte" and "lte" leave the value itself out, "gt" and "lt" take it in.
const operators = {
  eq: {says: 'equals', holds: (a, b) => comparable(a) && equal(a, b)},
  ne: {says: 'differs from', holds: (a, b) => comparable(a) && !equal(a, b)},
  cnt: {says: 'contains', holds: texts((a, b) => a.includes(b))},
  dnc: {says: 'does not contain', holds: texts((a, b) => !a.includes(b))},
  gte: {says: 'is above', holds: compared((a, b) => a > b)},
  lte: {says: 'is below', holds: compared((a, b) => a < b)},
  gt: {says: 'is at least', holds: compared((a, b) => a >= b)},
  lt: {says: 'is at most', holds: compared((a, b) => a <= b)},
};

export function conditionsOf(campaign) {
  return listOr(campaign.trigger_params);
}

export function conditionText(condition) {
  const {key, op, value} = objectOr(condition);
  const says = Object.hasOwn(operators, op) ? operators[op].says : `(“${brief(op, 20)}” is no operator, so it holds)`;
  return `${brief(key, 40)} ${says} ${brief(JSON.stringify(value) ?? 'nothing', 60)}`;
}

/** Undefined where there is none of that name. */
export function parameterOf(parameters, key) {
  return isObject(parameters) && Object.hasOwn(parameters, key) ? parameters[key] : undefined;
}

export function conditionHolds(condition, parameters) {
  if (!isObject(condition)) return false;
  const actual = parameterOf(parameters, condition.key);
  if (actual === undefined) return false;
  return !Object.hasOwn(operators, condition.op) || operators[condition.op].holds(actual, condition.value);
}

/** Whether an event with {parameters} is one that the campaign asks for. */
export function meetsConditions(campaign, event) {
  const wanted = campaign.trigger_params;
  if (wanted === undefined || wanted === null) return true;
  if (isObject(wanted)) return Object.keys(wanted).length === 0;
  return Array.isArray(wanted) && wanted.every(condition => conditionHolds(condition, event.parameters));
}

// --- What happened ---

/** Names and parameters, from the stop; of a running session, what the wizard was told. */
export function eventsOf(session) {
  if (session.stop) {
    return listOr(objectOr(session.stop.payload).custom_events).filter(isObject).map(event => ({name: textOr(event.event_name), parameters: objectOr(event.event_params)}));
  }
  return session.feeds.filter(feed => isObject(feed.data) && typeof feed.data.event_name === 'string').map(feed => ({
    name: feed.data.event_name,
    parameters: Object.fromEntries(listOr(feed.data.event_params).filter(isObject).map(one => [String(one.name), one.value]))}));
}

const byId = {
  'App Template has been chosen.': ['chosen'],
  'Frequency is capped': ['cap', 'It was shown before, and its frequency has not passed.'],
  'App template load request': ['loading'],
  'Waiting other orbinel webview': ['page', 'Another message was waiting for its turn, or this one has no page.'],
  'Template URL is invalid': ['page', 'The address of its page cannot be used.'],
  'Template request failed': ['page', 'Its page could not be loaded.'],
};
const byEvent = {
  'Other app template on screen': ['screen', 'Another message was on the screen.'],
  'Orientation is not portrait': ['screen', 'The device was held sideways when its event came.'],
};
const ofTheChosen = {
  'Blocked in-app message removed.': ['allowed', 'The application hides messages (disableInAppMessages).'],
  "Can't show inapp.": ['group', 'This user is in the control group: nothing is shown, only noted.'],
  "Webview can't load.": ['page', 'It has no page: its content names neither an address nor a picture.'],
};
const notACustomScreen = 'inappPosition is not kCUSTOMSREEN';
const ofTheOneOnScreen = {
  'Inapp has been shown.': ['shown'],
  'Application state is background.': ['moment', 'The application was in the background when it was to appear.'],
  'InApp already in view.': ['moment', 'A page of a push was open when it was to appear.'],
  'In-app messages disabled and removed.': ['allowed', 'The application hid messages while it was there (disableInAppMessages).'],
};
// How far the message on the screen has come when these lines are written.
const stages = {
  'App template load request': 'loading', 'Webview delay received.': 'delayed', 'showInapp has been called.': 'due', 'Inapp has been shown.': 'settled',
  'Application state is background.': 'settled', 'InApp already in view.': 'settled', 'Template request failed': 'settled',
  'In-app messages disabled and removed.': 'settled',
};
const removedWhile = {
  loading: ['page', 'It was removed while its page was still loading: by the application, a login, or the application leaving the foreground.'],
  delayed: ['moment', 'It was removed before its delay had passed: by the application, a login, or the application leaving the foreground.'],
  due: ['moment', 'The device was held sideways when it was to appear.'],
};

/** A warning of the web view in plain words. */
function loadingTrouble({message, attributes}) {
  const [, kind, code] = /^Webview warning\. (SSL|Other)\. (-?\d+)/.exec(message) ?? [];
  if (kind) return `Its page could not be loaded: ${kind === 'SSL' ? 'the secure connection failed' : 'the request failed'} (${code}).`;
  if (message.includes('contentProcessDidTerminate')) return 'The process that draws its page ended.';
  return `The loading of its page broke off${attributes.errorDescription ? `: ${brief(attributes.errorDescription, 160)}` : '.'}`;
}

/** Goes through the in-app lines once; each outcome goes to the campaigns that it is about. */
function outcomesOf(session, campaigns, byTrigger) {
  const outcomes = new Map(campaigns.map(one => [one, []]));
  const byCampaignId = groupedBy(campaigns, idOf);
  const withId = id => byCampaignId.get(id) ?? [];
  const withTrigger = trigger => byTrigger.get(trigger) ?? [];
  let chosen = [];
  let onScreen = [];
  let stage = 'settled';
  for (const line of session.logs) {
    if (line.type !== 'inapp') continue;
    const id = line.attributes.inapp_id === undefined ? undefined : brief(line.attributes.inapp_id, 80);
    const note = (about, [gate, sentence]) => about.forEach(one => outcomes.get(one).push({gate, sentence, line}));
    if (Object.hasOwn(stages, line.message)) stage = stages[line.message];
    if (line.message === 'App Template has been chosen.') chosen = withId(id);
    if (Object.hasOwn(byId, line.message) && id !== undefined) {
      const outcome = [...byId[line.message]];
      if (line.attributes.reason) outcome[1] += ` (${brief(line.attributes.reason)})`;
      note(withId(id), outcome);
      if (outcome[0] === 'loading') onScreen = withId(id);
    } else if (Object.hasOwn(byEvent, line.message)) {
      note(withTrigger(line.attributes.event_name), byEvent[line.message]);
    } else if (Object.hasOwn(ofTheOneOnScreen, line.message)) {
      note(onScreen, ofTheOneOnScreen[line.message]);
    } else if (Object.hasOwn(ofTheChosen, line.message)) {
      note(chosen, ofTheChosen[line.message]);
    } else if (line.attributes.reason === notACustomScreen) {
      note(chosen, ['page', 'Its content is not of the kind that is shown (type 4).']);
    } else if (/^Webview warning/.test(line.message)) {
      if (stage !== 'settled') note(onScreen, ['page', loadingTrouble(line)]);
      if (line.message.includes('Terminate')) stage = 'settled';
    } else if (line.message === 'Webview has been removed from superview') {
      if (Object.hasOwn(removedWhile, stage)) note(onScreen, removedWhile[stage]);
      stage = 'settled';
    } else if (line.message === 'App template selected' || line.message === 'App template not found') {
      note(withTrigger(line.attributes.event_name), ['heard']);
    }
  }
  return outcomes;
}

// --- The verdict ---

/** Lists of the items by what `keyOf` gives of them, each in the order of the items. */
function groupedBy(items, keyOf) {
  const groups = new Map();
  for (const item of items) {
    const key = keyOf(item);
    const group = groups.get(key);
    if (group) group.push(item);
    else groups.set(key, [item]);
  }
  return groups;
}

/**
 * What a session says of its campaigns: {campaigns, verdictOf(campaign)}. A verdict, {campaign, shown, gate, sentence,
 * sure, facts, lines, reached}, is worked out when it is first asked for: there can be thousands, and few are looked at.
 */
export function judgeOf(session) {
  const campaigns = campaignsOf(session.answer);
  const rivals = groupedBy(campaigns, one => one.trigger);
  const eventsByName = groupedBy(eventsOf(session).filter(event => rivals.has(event.name)), event => event.name);
  const outcomes = outcomesOf(session, campaigns, rivals);
  const stop = objectOr(session.stop?.payload);
  const closed = groupedBy(listOr(stop.inapp_logs).filter(isObject), idOf);
  const blocked = groupedBy(listOr(stop.blocked_inapps).filter(isObject), idOf);
  const verdicts = new Map();

  function judge(campaign) {
    const occurred = eventsByName.get(campaign.trigger) ?? [];
    const matching = (campaign.trigger_params ?? null) === null ? occurred : occurred.filter(event => meetsConditions(campaign, event));
    const facts = {occurred, matching, needed: countOf(campaign)};
    const mine = outcomes.get(campaign);
    const about = {campaign, facts, session, ofItsTrigger: rivals.get(campaign.trigger), outcomes: mine,
                   closed: closed.get(idOf(campaign)) ?? [], blocked: blocked.get(idOf(campaign)) ?? []};
    const verdict = fromTheLog(about) ?? fromTheStop(about) ?? fromTheEvents(about);
    return {campaign, facts, ...verdict, lines: mine.map(outcome => outcome.line), reached: reachedBy(verdict)};
  }

  function verdictOf(campaign) {
    if (!verdicts.has(campaign)) verdicts.set(campaign, judge(campaign));
    return verdicts.get(campaign);
  }
  return {campaigns, verdictOf};
}

const stopped = (gate, sentence, sure = true) => ({shown: 0, gate, sentence, sure});

function shownResult(times, later) {
  const sentence = times === 1 ? 'It was shown.' : `It was shown ${times} times.`;
  return {shown: times, gate: null, sentence: later ? `${sentence} Later: ${later}` : sentence, sure: true};
}

function fromTheLog({outcomes, closed, blocked}) {
  const decisive = outcomes.filter(outcome => outcome.sentence || outcome.gate === 'shown');
  const shown = decisive.filter(outcome => outcome.gate === 'shown').length;
  const last = decisive.at(-1);
  if (shown > 0) return shownResult(shown, last.sentence);
  if (blocked.length > 0) return null;
  if (closed.some(one => one.dismiss_type === keyboardOrLink) && outcomes.some(outcome => outcome.gate === 'loading')) {
    return stopped('moment', 'The keyboard was open when it was to appear.');
  }
  return last && closed.length === 0 ? stopped(last.gate, last.sentence) : null;
}

function fromTheStop({closed, blocked}) {
  if (closed.length > 0) {
    if (closed.every(one => one.dismiss_type === control)) return stopped('group', 'This user is in the control group: nothing is shown, only noted.');
    const shown = closed.filter(one => one.dismiss_type !== control && one.dismiss_type !== keyboardOrLink).length;
    if (shown > 0) return shownResult(shown);
    return stopped('moment', 'It closed because the keyboard was open, or by a link; the diagnostic log would say which.', false);
  }
  if (blocked.length > 0) return stopped('allowed', 'The application hides messages (disableInAppMessages).');
  return null;
}

function fromTheEvents({campaign, facts, session, ofItsTrigger, outcomes}) {
  const {occurred, matching, needed} = facts;
  const sure = Boolean(session.stop);
  if (session.answer.sdk_disabled) return stopped('trigger', 'The library was switched off by the session start.');
  if (typeof campaign.trigger !== 'string') return stopped('trigger', 'Its trigger is no text, so it was dropped.');
  const heard = outcomes.some(outcome => outcome.gate === 'heard' || outcome.gate === 'chosen');
  if (occurred.length === 0 && heard && !sure) return stopped('conditions', 'Its event came; what it carried is known once the session has stopped.', false);
  if (occurred.length === 0) {
    return stopped('trigger', sure ? `“${brief(campaign.trigger, 60)}” did not occur in this session.`
                                   : `“${brief(campaign.trigger, 60)}” has not been heard of yet; the stop brings the events.`, sure);
  }
  if (matching.length === 0) return stopped('conditions', failedCondition(campaign, occurred.at(-1)), sure);
  if (matching.length < needed) return stopped('count', `Its event has to come ${needed} times, and came ${matching.length === 1 ? 'once' : matching.length + ' times'}.`, sure);
  if (campaign.trigger === 'session_start' && session.logs.length > 0 && !heard) {
    return stopped('priority', 'A message of a push came first: the start’s own are not asked for then.', false);
  }
  const rival = rivalOf(campaign, ofItsTrigger);
  if (rival) return stopped('priority', rival, false);
  if (objectOr(campaign.content).type === controlGroup) return stopped('group', 'Its content is for the control group: nothing is shown.', false);
  return stopped('page', session.logs.length > 0 ? 'It was due; the log does not say what became of it.'
                                                 : 'It was due. Switch the diagnostic log on (Answers) to see what became of it.', false);
}

function failedCondition(campaign, event) {
  const failed = listOr(campaign.trigger_params).find(condition => !conditionHolds(condition, event.parameters));
  const key = objectOr(failed).key;
  const actual = parameterOf(event.parameters, key);
  return failed === undefined ? 'Its conditions cannot be read.'
    : `Wanted: ${conditionText(failed)}. ${actual === undefined ? 'The event has no such parameter.' : `It was ${brief(JSON.stringify(actual), 60)}.`}`;
}

/** The smallest priority wins, of equal ones the later campaign, and an event-based one before a counted one. */
function rivalOf(campaign, ofItsTrigger) {
  const mine = priorityOf(campaign);
  const place = ofItsTrigger.indexOf(campaign);
  const isCounted = one => !isEventBased(one) && countOf(one) === countOf(campaign);
  const before = ofItsTrigger.find((one, i) => {
    if (i === place || !(isEventBased(one) || isCounted(one))) return false;
    if (isEventBased(one) !== isEventBased(campaign)) return isEventBased(one) ? priorityOf(one) <= mine : priorityOf(one) < mine;
    return priorityOf(one) < mine || (priorityOf(one) === mine && i > place);
  });
  if (before) return `Campaign ${idOf(before)} of the same event comes first: priority ${priorityOf(before)} against ${mine}.`;
  if (isEventBased(campaign) && mine > lowestPriority && !ofItsTrigger.some(isCounted)) {
    return `An event-based campaign beyond priority ${lowestPriority} is not chosen by itself; this one has ${mine}.`;
  }
  return null;
}

function reachedBy({shown, gate}) {
  const at = shown > 0 ? names.length : names.indexOf(gate);
  return names.map((name, i) => ({name, state: i < at ? 'passed' : i === at ? 'stopped' : 'not reached'}));
}
