import {field, make, say} from './dom.js';
import {brief, isObject, listOr} from './format.js';
import {isKept, lossOf} from './json_loss.js';

// The session start as a form. People try odd answers here: what nobody touches is saved as it came, whatever it is.

const portion = 50;  // entries of a list made at once

/** {nodes, read()} of an answer: controls for its members, or its text where a form would change what it does not show. */
export function startParts({text}) {
  const answer = JSON.parse(text);
  const why = isObject(answer) ? lossOf(text, answer) : 'it is no object';
  return why ? textParts(text, why) : formParts(answer);
}

function textParts(text, why) {
  const control = make('textarea', {rows: 14, spellcheck: 'false'});
  control.value = text;
  return {nodes: [make('p', {class: 'hint'}, `This answer is edited as text: ${why}.`), field('Session start, JSON', control)], read: () => control.value};
}

function formParts(answer) {
  const parts = [switches(answer), campaigns(answer), contents(answer), recommendations(answer)];
  return {nodes: parts.map(part => part.node), read() {
    const edited = {...answer};
    for (const part of parts) part.write(edited);
    return JSON.stringify(edited, null, 2);
  }};
}

function fieldset(legend, ...children) {
  return make('fieldset', {class: 'group'}, make('legend', {}, legend), ...children);
}

// --- Members, each of which is written only where its control was edited ---

const kindNames = {number: 'number', string: 'text'};

/** A member of an object; what is not of its kind is shown and read as JSON. `write` leaves alone what nobody edited. */
function member(object, name, kind, label, {rows = 0, hint} = {}) {
  const value = object[name];
  const isOdd = kind !== 'json' && value !== undefined && typeof value !== kind;
  const isJson = kind === 'json' || isOdd;
  const control = rows > 0 ? make('textarea', {rows, spellcheck: 'false'})
                           : make('input', kind === 'number' && !isOdd ? {type: 'number', step: 'any'} : {type: 'text'});
  if (value !== undefined) control.value = isJson ? JSON.stringify(value, null, rows > 0 ? 1 : 0) : value;
  const before = control.value;
  const reads = isJson ? jsonIn : kind === 'number' ? numberIn : textIn;
  return {control, node: field(label, control, isOdd ? `JSON, since it is no ${kindNames[kind]}` : hint), write(edited) {
    if (control.value === before && !control.validity.badInput) return;
    const read = reads(control, name);
    if (read === undefined) delete edited[name];
    else edited[name] = read;
  }};
}

function textIn(control) { return control.value.trim() || undefined; }

function numberIn(control, name) {
  const text = control.value.trim();
  if (control.validity.badInput) throw new Error(`${name} must be a number.`);
  if (text && !isKept(text)) throw new Error(`${name} has more digits than this form keeps; the form for any answer takes them.`);
  return text ? Number(text) : undefined;
}

function jsonIn(control, name) {
  const text = control.value.trim();
  if (!text) return undefined;
  let loss;
  try {
    const value = JSON.parse(text);
    loss = lossOf(text, value);
    if (!loss) return value;
  } catch (wrong) {
    control.focus();
    throw new Error(`${name} is not JSON: ${wrong.message}.`);
  }
  throw new Error(`${name} cannot be saved from this form: ${loss}.`);
}

function switchFor(answer, name, label) {
  const before = Boolean(answer[name]);
  const box = make('input', {type: 'checkbox', checked: before});
  return {node: make('label', {class: 'chip'}, box, label), write(edited) { if (box.checked !== before) edited[name] = box.checked; }};
}

function switches(answer) {
  const names = {sdk_disabled: 'Library switched off (sdk_disabled)', is_logging_enabled: 'Diagnostic log (is_logging_enabled)', reset_iid: 'New ID for the user (reset_iid)'};
  const boxes = Object.entries(names).map(([name, label]) => switchFor(answer, name, label));
  const interval = member(answer, 'log_flush_time_interval', 'number', 'Seconds between logs (log_flush_time_interval)');
  return {node: fieldset('Switches', make('div', {class: 'chips'}, ...boxes.map(({node}) => node)), interval.node),
          write(edited) { for (const one of [...boxes, interval]) one.write(edited); }};
}

// --- Lists ---

/** A list of editable entries with a button that adds one. `makeEntry` gives {node, read()}. */
function editableList(values, addLabel, blank, makeEntry) {
  const entries = values.map(value => ({value, read: () => value}));
  const unmade = [...entries];
  const draw = entry => {
    const {node, read} = makeEntry(entry.value);
    entry.read = read;
    const item = make('li', {}, node, make('button', {type: 'button', onclick: () => remove(entry, item)}, 'Remove'));
    return item;
  };
  const moreButton = make('button', {type: 'button', onclick: () => focusIn(drawPortion())});
  const more = make('li', {class: 'more'}, moreButton);
  const list = make('ol', {class: 'edited'}, more);
  const drawPortion = () => {
    const items = unmade.splice(0, portion).map(draw);
    more.before(...items);
    more.hidden = unmade.length === 0;
    moreButton.textContent = `${unmade.length} more`;
    return items[0];
  };
  const addButton = make('button', {type: 'button', onclick: () => {
    const entry = {value: blank()};
    entries.push(entry);
    const item = draw(entry);
    list.append(item);
    item.querySelector('input, textarea, select')?.focus();
    tellOfEdit(list);
  }}, addLabel);
  const remove = (entry, item) => {
    entries.splice(entries.indexOf(entry), 1);
    const next = [item.nextElementSibling, item.previousElementSibling].find(one => one && !one.hidden);
    item.remove();
    tellOfEdit(list);
    say('Removed');
    if (!focusIn(next)) addButton.focus();
  };
  drawPortion();
  return {node: make('div', {}, list, addButton), read: () => entries.map(entry => entry.read()).filter(one => one !== undefined)};
}

function focusIn(item) {
  const control = item?.querySelector('summary, input, textarea, select, button');
  control?.focus();
  return Boolean(control);
}

/** An entry that comes or goes is an edit too. */
function tellOfEdit(node) { node.dispatchEvent(new Event('input', {bubbles: true})); }

/** The list that is a member of the answer; what is no list, and no object in it, is edited as JSON. */
function listMember(answer, name, legend, addLabel, blank, makeEntry) {
  const value = answer[name];
  if (value !== undefined && !Array.isArray(value)) {
    const {node, write} = member(answer, name, 'json', `${name} (no list), JSON`, {rows: 3});
    return {node: fieldset(legend, node), write};
  }
  const list = editableList(listOr(value), addLabel, blank, one => (isObject(one) ? makeEntry(one) : oddEntry(one)));
  return {node: fieldset(legend, list.node), write(edited) {
    const read = list.read();
    if (read.length > 0 || name in answer) edited[name] = read;
  }};
}

function oddEntry(value) {
  const one = member({value}, 'value', 'json', 'No object, JSON', {rows: 2});
  return {node: one.node, read() {
    const edited = {value};
    one.write(edited);
    return edited.value;
  }};
}

/** {read()} of an object whose members were edited. */
function readerOf(object, members) {
  return () => {
    const edited = {...object};
    for (const one of members) one.write(edited);
    return edited;
  };
}

// --- What a start delivers ---

function campaigns(answer) {
  const lastId = listOr(answer.inapps).reduce((last, one) => Math.max(last, Number(isObject(one) && one.inapp_id) || 0), 0);
  const newOne = () => ({inapp_id: lastId + 1, variant_id: 1, priority: 10,
                         content: {type: 4, template_url: '${origin}/templates/banner', inappType: 4, layoutStyle: 4, buttonLayout: 0,
                                                template_layout: {height: 0.2, position: 7, ignoreSafeZone: false}}});
  return listMember(answer, 'inapps', 'Campaigns', 'Add a campaign', newOne, campaignEntry);
}

function campaignEntry(campaign) {
  const numbers = {inapp_id: 'ID', variant_id: 'Variant', trigger_count: 'Count', priority: 'Priority', frequency: 'Cap, seconds (-1: for good)', delay: 'Delay, seconds'};
  const [id, ...others] = Object.entries(numbers).map(([name, label]) => member(campaign, name, 'number', label));
  const trigger = member(campaign, 'trigger', 'string', 'Trigger');
  const members = [trigger, shownMember(campaign), id, ...others,
                   member(campaign, 'trigger_params', 'json', 'Conditions, JSON', {rows: 2, hint: '[{"key": "price", "op": "gt", "value": 100}]'}),
                   member(campaign, 'content', 'json', 'Content, JSON', {rows: 4})];
  const title = () => `Campaign ${id.control.value || 'without an ID'}${trigger.control.value ? ', ' + trigger.control.value : ''}`;
  const summary = make('summary', {}, title());
  trigger.control.addEventListener('input', () => { summary.textContent = title(); });
  return {node: make('details', {open: !campaign.trigger}, summary, make('div', {class: 'fields'}, ...members.map(({node}) => node))),
          read: readerOf(campaign, members)};
}

function shownMember(campaign) {
  const select = make('select', {}, make('option', {value: ''}, 'once, by count'), make('option', {value: 'event'}, 'at every event'));
  const before = select.value = campaign.show_type === 'event' ? 'event' : '';
  return {node: field('Shown', select), write(edited) {
    if (select.value === before) return;
    if (select.value) edited.show_type = select.value;
    else delete edited.show_type;
  }};
}

function contents(answer) {
  const newOne = () => ({content_id: 1, variant_id: 1, variables: [{variable_name: '', new_value: ''}]});
  return listMember(answer, 'contents', 'Content', 'Add a content', newOne, content => {
    const members = [member(content, 'content_id', 'number', 'Content ID'), member(content, 'variant_id', 'number', 'Variant'),
                     member(content, 'variables', 'json', 'Variables, JSON', {rows: 3})];
    return {node: make('div', {class: 'fields'}, ...members.map(({node}) => node)), read: readerOf(content, members)};
  });
}

function recommendations(answer) {
  const name = 'smart_recommendations';
  const legend = 'Recommendations';
  const hint = make('p', {class: 'hint'}, 'The products are in recommendations.json, below.');
  if (answer[name] !== undefined && !isObject(answer[name])) {
    const {node, write} = member(answer, name, 'json', `${name} (no object), JSON`, {rows: 3});
    return {node: fieldset(legend, node, hint), write};
  }
  const list = editableList(Object.entries(answer[name] ?? {}), 'Add a recommendation', () => null, recommendationEntry);
  return {node: fieldset(legend, list.node, hint), write(edited) {
    const read = list.read();
    const ids = new Set();
    for (const [id] of read) {
      if (ids.has(id)) throw new Error(`There are two recommendations of the campaign “${brief(id, 40)}”.`);
      ids.add(id);
    }
    if (read.length > 0 || name in answer) edited[name] = Object.fromEntries(read);
  }};
}

/** Of a new one, which is null here, nothing is read until it has a campaign. */
function recommendationEntry(pair) {
  const [name, value] = pair ?? ['', ''];
  const id = make('input', {type: 'text'});
  id.value = name;
  const before = id.value;
  const url = member({url: value}, 'url', 'string', 'Address');
  return {node: make('div', {class: 'fields pair'}, field('Campaign', id), url.node), read() {
    const edited = {url: value};
    url.write(edited);
    const own = id.value === before ? name : id.value.trim();
    return pair || own ? [own, 'url' in edited ? edited.url : ''] : undefined;
  }};
}
