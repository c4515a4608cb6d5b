import {brief, isObject, listOr, numberOr, objectOr, textOr} from './format.js';
import {campaignsOf, meetsConditions} from './gates.js';
import {call} from './scenario_steps.js';

// What happened with the messages of a session: a page that was loaded, what the person did in it, how it closed. The
// message itself comes by its trigger from what the backend delivers.

const controlGroup = 8;  // among the reasons of closing: noted by the library, nothing was to be seen
const keyboardOrLink = 7;
const fade = 0.4;        // seconds, a little more than it takes

/**
 * What is to be done around the events of a session, by their places: `before` and `after` hold functions that add steps;
 * `causedByPages` the events that a page causes again; `moments` are {time, act}.
 */
export function messagePlan(session, events, notes) {
  const plan = {before: new Map(), after: new Map(), causedByPages: new Set(), moments: []};
  const stories = [...closedStories(session, events, notes), ...hiddenStories(session, events), ...silentStories(session, events)].sort((a, b) => a.trigger - b.trigger);
  addOpenStories(session, events, stories);
  const told = new Told(session);
  let free = -1;  // the last event at which another message left the screen
  for (const story of stories) {
    if (story.trigger < 0) continue;
    if (mayShowOther(session, events, free, story.trigger)) at(plan.before, story.trigger, clearScreen);
    addStory(plan, story, events, told);
    free = story.end ?? story.trigger;
  }
  for (const place of refusedPlaces(session, events)) addRefusal(plan, place);
  for (const place of sidewaysPlaces(session, events)) {
    at(plan.before, place, steps => steps.add({device: {orientation: 'landscape'}}));
    at(plan.after, place, steps => steps.add({device: {orientation: 'portrait'}}));
  }
  if (stories.length > 0) {
    notes.add('Messages come from the answer to the start: the copy needs a backend that delivers the same campaigns.');
    notes.add('What a page did that is not recorded (texts it copied, links it opened, shaking) is left out.');
  }
  return plan;
}

function at(places, place, act) { places.set(place, [...(places.get(place) ?? []), act]); }

function clearScreen(steps) {
  steps.add(call('removeInapp'));
  steps.pass(fade);
}

// --- Which messages came ---

const idOf = value => (typeof value === 'number' || typeof value === 'string' ? String(value) : '');
const delayOf = campaign => Math.max(0, numberOr(Number(campaign.delay ?? 0), 0));

function campaignWith(session, id) { return id ? campaignsOf(session.answer).find(one => idOf(one.inapp_id) === id) : undefined; }

/** The last event within the places that can have brought the message, early enough for its delay; -1 where there is none. */
function triggerOf(campaign, events, {after, before, time}) {
  const due = event => event.name === campaign.trigger && meetsConditions(campaign, event);
  for (const latest of [time - delayOf(campaign), time]) {
    for (let i = before - 1; i > after; --i) if (due(events[i]) && events[i].time <= latest) return i;
  }
  return -1;
}

/** One story for each "inapp_seen" of which the start delivered the campaign. */
function closedStories(session, events, notes) {
  const logs = listOr(objectOr(session.stop?.payload).inapp_logs).filter(isObject);
  const stories = [];
  let after = -1;
  events.forEach(({name, parameters, time}, place) => {
    if (name !== 'inapp_seen') return;
    const log = logs.shift() ?? {};
    if (parameters.dismiss_type === controlGroup) return;
    const id = idOf(parameters.inapp_id);
    const campaign = campaignWith(session, id);
    const trigger = campaign ? triggerOf(campaign, events, {after, before: place, time}) : -1;
    if (trigger < 0) notes.add(`Message ${brief(id, 40)} did not come from a campaign of this session's start; it is left out.`);
    else stories.push({id, campaign, trigger, end: place, reason: numberOr(parameters.dismiss_type, 0), clicks: listOr(log.click_logs).filter(isObject)});
    after = place;
  });
  return stories;
}

/** Messages that were on the screen when the application hid them: no event of that moment brought them. */
function hiddenStories(session, events) {
  return blockedOf(session).flatMap(({id, time}) => {
    const campaign = campaignWith(session, id);
    if (!campaign || refusedAt(campaign, events, time) >= 0) return [];
    const trigger = triggerOf(campaign, events, {after: -1, before: events.length, time});
    return trigger < 0 ? [] : [{id, campaign, trigger, hiddenAt: time, clicks: []}];
  });
}

/** Messages that were removed without a trace in the record; the log tells of them. */
function silentStories(session, events) {
  let latest;
  return session.logs.flatMap(line => {
    if (line.message === 'App template load request') latest = idOf(line.attributes.inapp_id);
    if (line.message !== 'Inapp has been removed silently') return [];
    const campaign = campaignWith(session, latest);
    const trigger = campaign ? triggerOf(campaign, events, {after: -1, before: events.length, time: line.time}) : -1;
    return trigger < 0 ? [] : [{id: latest, campaign, trigger, silentAt: line.time, clicks: []}];
  });
}

/** Messages of which only an answer of the person tells. */
function addOpenStories(session, events, stories) {
  for (const {inapp_id: answered} of answersOf(session)) {
    const id = idOf(answered);
    const campaign = campaignWith(session, id);
    if (!campaign || stories.some(story => story.id === id)) continue;
    const after = Math.max(-1, ...stories.map(story => story.end ?? story.trigger));
    const trigger = triggerOf(campaign, events, {after, before: events.length, time: Infinity});
    stories.push({id, campaign, trigger, clicks: []});
  }
}

function answersOf(session) {
  const stop = objectOr(session.stop?.payload);
  return [...listOr(stop.survey_results), ...listOr(stop.lead_logs)].filter(isObject);
}

function mayShowOther(session, events, after, before) {
  const triggers = new Set(campaignsOf(session.answer).map(one => one.trigger));
  return events.slice(after + 1, before).some(event => triggers.has(event.name));
}

// --- What was done with one of them ---

function addStory(plan, story, events, told) {
  const {campaign, trigger, end, reason, hiddenAt, silentAt} = story;
  const closing = end === undefined ? hiddenAt ?? silentAt ?? Infinity : events[end].time;
  const actions = told.between(events[trigger].time, closing, end !== undefined) ?? reported(story, told);
  const byKeyboard = reason === keyboardOrLink && actions.length === 0;
  let shownAt = 0;
  at(plan.after, trigger, steps => {
    if (byKeyboard) steps.add({device: {keyboard_open: true}});
    steps.add({template: {finish: true}});
    shownAt = steps.now + delayOf(campaign);
  });
  const send = (steps, action) => {
    steps.moveTo(Math.max(shownAt, action.time ?? 0));
    steps.add({template: {send: action.send}});
  };
  const close = steps => {
    steps.moveTo(shownAt);
    if (byKeyboard) steps.add({device: {keyboard_open: false}});
    else if (end !== undefined && !actions.some(closes)) steps.add({template: {send: {dismiss: {dismiss: reason}}}});
    if (hiddenAt !== undefined) steps.add(call('disableInAppMessages'));
    if (silentAt !== undefined && !actions.some(({send: sent}) => 'silent_dismiss' in sent)) steps.add(call('removeInapp'));
    steps.pass(fade);
    if (hiddenAt !== undefined) steps.add(call('enableInAppMessages'));
  };
  if (end === undefined) {
    const act = steps => { actions.forEach(action => send(steps, action)); close(steps); };
    return Number.isFinite(closing) ? plan.moments.push({time: closing, act}) : at(plan.after, trigger, act);
  }
  let place = trigger + 1;
  for (const action of actions) {
    place = placeOf(plan, action, events, place, end);
    at(plan.before, place, steps => send(steps, action));
  }
  at(plan.before, end, close);
}

const closes = ({send}) => 'dismiss' in send;

/** What the record holds of a page's doings: clicks, answers, forms. */
function reported({id, clicks}, told) {
  return [...clicks.map(({timestamp, ...click}) => ({time: numberOr(timestamp, undefined), send: {send_click_data: click}})),
          ...told.takeAnswers(id).map(send => ({send}))];
}

/** Before which event a page's action stands: the first that it causes, or the first after its second. */
function placeOf(plan, action, events, from, end) {
  if (closes(action)) from = end;
  const names = eventsCausedBy(action.send);
  let first;
  for (let i = from; i < end && names.length > 0; ++i) {
    const found = names.indexOf(events[i].name);
    if (found < 0) continue;
    names.splice(found, 1);
    plan.causedByPages.add(i);
    first ??= i;
  }
  if (first !== undefined) return first;
  const later = events.findIndex((event, i) => i >= from && event.time > (action.time ?? Infinity));
  return later < 0 ? end : Math.min(later, end);
}

function eventsCausedBy(send) {
  const tagged = listOr(send.event).concat(listOr(objectOr(send.event).events));
  const items = (value, key) => listOr(value).concat(listOr(objectOr(value)[key]));
  return [...tagged.map(event => textOr(objectOr(event).name)),
          ...items(send.item_cart, 'cart_items').map(() => 'item_added_to_cart'),
          ...items(send.item_purchase, 'purchased_items').map(() => 'confirmation_page_view')];
}

/** What pages sent, by the diagnostic log, and the answers of the person, by the record; each is given once. */
class Told {
  constructor(session) {
    this.sent = session.logs.filter(line => line.message === 'Received data from WebView.').flatMap(line => {
      const send = readObject(line.attributes.template_data);
      return send ? [{time: line.time, send}] : [];
    });
    this.answers = answersOf(session);
  }

  /** Up to what closes the message; null where the log does not tell about it. */
  between(from, to, mustClose) {
    const mine = [];
    while (this.sent.length > 0 && !(this.sent[0].time > to)) {
      const one = this.sent.shift();
      if (one.time < from) continue;
      mine.push(one);
      if ('dismiss' in one.send || 'silent_dismiss' in one.send) break;
    }
    return mine.length > 0 && (!mustClose || mine.some(closes)) ? mine : null;
  }

  takeAnswers(id) {
    const mine = this.answers.filter(answer => idOf(answer.inapp_id) === id);
    this.answers = this.answers.filter(answer => !mine.includes(answer));
    return mine.map(({input, question, answer}) => (question === undefined ? {lead: input} : {survey: {question, answer}}));
  }
}

function readObject(text) {
  try {
    const value = JSON.parse(text);
    return isObject(value) ? value : null;
  } catch {
    return null;
  }
}

// --- What was held back ---

function blockedOf(session) {
  return listOr(objectOr(session.stop?.payload).blocked_inapps).filter(isObject)
    .map(one => ({id: idOf(one.inapp_id), time: numberOr(one.timestamp, NaN)})).filter(({time}) => time >= 0);
}

function refusedAt(campaign, events, time) {
  return events.findIndex(event => event.name === campaign.trigger && event.time === time && meetsConditions(campaign, event));
}

function refusedPlaces(session, events) {
  return new Set(blockedOf(session).flatMap(({id, time}) => {
    const campaign = campaignWith(session, id);
    const place = campaign ? refusedAt(campaign, events, time) : -1;
    return place < 0 ? [] : [place];
  }));
}

function addRefusal(plan, place) {
  at(plan.before, place, steps => steps.add(call('disableInAppMessages')));
  at(plan.after, place, steps => steps.add(call('enableInAppMessages')));
}

/** Events that came while the device was held sideways, as the log says. */
function sidewaysPlaces(session, events) {
  const lines = session.logs.filter(line => line.message === 'Orientation is not portrait');
  return new Set(lines.map(line => events.findIndex(event => event.name === line.attributes.event_name && event.time === line.time)).filter(place => place >= 0));
}
