import {field, make, say} from './dom.js';
import {isObject, listOr, objectOr, textOr} from './format.js';

// What devices are told, edited here. Nothing of it changes a file, and all of it counts from the next start on.

const startFile = 'session_start.json';
const consentChoices = {true: 'given', false: 'refused'};

/** Campaigns, contents, recommendations and switches of the session start; consents; every other answer as text. */
export function answersView(context) {
  const partners = make('datalist', {id: 'partners'});
  const partner = make('input', {list: 'partners', autocomplete: 'off', spellcheck: 'false', onchange: () => load()});
  const told = make('p', {role: 'status', class: 'told'});
  const start = make('div', {});
  const files = make('div', {});
  const consents = make('div', {});
  const node = make('div', {class: 'page'}, partners,
    make('div', {class: 'filters'}, field('Answers for the partner', partner, 'Empty: for every partner without its own')),
    told, start, make('section', {'aria-label': 'Consents'}, make('h2', {}, 'Consents of devices'), consents), files);
  let loaded = false;
  let dirty = false;  // what is being edited stays when the person looks at another view
  for (const part of [start, files]) part.addEventListener('input', () => { dirty = true; });

  function tell(text, isBad = false) {
    told.textContent = text;
    told.classList.toggle('problem', isBad);
  }

  async function save(file, text) {
    const response = await ask('PUT', '/inspect/answer-files', {partner: partner.value.trim(), file, text});
    if (response.error) return tell(response.error, true);
    await load();
    tell(`${file} is in force for ${partner.value.trim() || 'everybody'} from the next request on.`);
  }

  async function takeBack(file) {
    const query = new URLSearchParams({file, partner: partner.value.trim()});
    const response = await ask('DELETE', '/inspect/answer-files?' + query);
    if (response.error) return tell(response.error, true);
    await load();
    tell(`${file} is taken from the directory again.`);
  }

  async function load() {
    const found = await ask('GET', '/inspect/answer-files?' + new URLSearchParams({partner: partner.value.trim()}));
    if (found.error) return tell(found.error, true);
    dirty = false;
    const startAnswer = found.find(one => one.file === startFile);
    start.replaceChildren(startForm(startAnswer, save, takeBack, tell));
    files.replaceChildren(fileForm(found, save, takeBack));
    const devices = await ask('GET', '/inspect/consents');
    consents.replaceChildren(consentTable(listOr(devices), tell));
  }

  return {
    node,
    open() { loaded = dirty; },
    update() {
      const known = [...context.store.partners].slice(-200);
      if (partners.childElementCount !== known.length) partners.replaceChildren(...known.map(value => make('option', {value})));
      if (!loaded) { loaded = true; load(); }
    },
  };
}

/** The answer, or {error: a sentence}. */
async function ask(method, path, body) {
  try {
    const response = await fetch(path, {method, body: body && JSON.stringify(body), headers: body ? {'Content-Type': 'application/json'} : {}});
    return await response.json();
  } catch {
    return {error: 'The backend does not answer.'};
  }
}

// --- The session start ---

function startForm({text, from}, save, takeBack, tell) {
  const answer = objectOr(JSON.parse(text));
  const parts = [switches(answer), campaigns(answer), contents(answer), recommendations(answer)];
  const form = make('form', {'aria-label': 'Session start', onsubmit: event => {
    event.preventDefault();
    try {
      const edited = {...answer};
      for (const part of parts) part.write(edited);
      save(startFile, JSON.stringify(edited, null, 2));
    } catch (wrong) {
      tell(wrong.message, true);
      say(wrong.message);
    }
  }}, make('h2', {}, 'Session start ', make('span', {class: 'tag'}, from)), ...parts.map(part => part.node), buttons(startFile, from, takeBack));
  return form;
}

function buttons(file, from, takeBack) {
  return make('div', {class: 'actions'}, make('button', {type: 'submit', class: 'first'}, 'Put in force'),
    from === 'edited' ? make('button', {type: 'button', onclick: () => takeBack(file)}, 'Take back') : '');
}

function fieldset(legend, ...children) {
  return make('fieldset', {class: 'group'}, make('legend', {}, legend), ...children);
}

function checkBox(label, checked) {
  const box = make('input', {type: 'checkbox', checked});
  return {box, node: make('label', {class: 'chip'}, box, label)};
}

function switches(answer) {
  const names = {sdk_disabled: 'Library switched off (sdk_disabled)', is_logging_enabled: 'Diagnostic log (is_logging_enabled)', reset_iid: 'New ID for the user (reset_iid)'};
  const boxes = Object.entries(names).map(([name, label]) => [name, checkBox(label, Boolean(answer[name]))]);
  const interval = input(answer.log_flush_time_interval, 'number');
  return {
    node: fieldset('Switches', make('div', {class: 'chips'}, ...boxes.map(([, {node}]) => node)), field('Seconds between logs (log_flush_time_interval)', interval)),
    write(edited) {
      for (const [name, {box}] of boxes) {
        if (box.checked || name in edited) edited[name] = box.checked;
      }
      setOrRemove(edited, 'log_flush_time_interval', numberIn(interval, 'log_flush_time_interval'));
    },
  };
}

function input(value, type = 'text') {
  return make('input', {type, value: value === undefined || value === null ? '' : typeof value === 'object' ? JSON.stringify(value) : value,
                        ...(type === 'number' ? {step: 'any'} : {})});
}

function numberIn(control, name) {
  const text = control.value.trim();
  if (!text) {
    if (control.validity.badInput) throw new Error(`${name} must be a number.`);
    return undefined;
  }
  return Number(text);
}

function jsonIn(control, name) {
  const text = control.value.trim();
  if (!text) return undefined;
  try {
    return JSON.parse(text);
  } catch (wrong) {
    control.focus();
    throw new Error(`${name} is not JSON: ${wrong.message}.`);
  }
}

function setOrRemove(object, name, value) {
  if (value === undefined) delete object[name];
  else object[name] = value;
}

/** A list of editable entries with a button that adds one. `make` gives {node, read()}. */
function editableList(entries, addLabel, blank, makeEntry) {
  const made = [];
  const list = make('ol', {class: 'edited'});
  const add = value => {
    const entry = makeEntry(value);
    const item = make('li', {}, entry.node, make('button', {type: 'button', onclick: () => {
      made.splice(made.indexOf(entry), 1);
      item.remove();
      say('Removed');
    }}, 'Remove'));
    made.push(entry);
    list.append(item);
    return item;
  };
  for (const value of entries) add(value);
  const button = make('button', {type: 'button', onclick: () => add(blank()).querySelector('input, textarea, select')?.focus()}, addLabel);
  return {node: make('div', {}, list, button), read: () => made.map(entry => entry.read())};
}

function campaigns(answer) {
  const newOne = () => ({inapp_id: 1 + Math.max(0, ...listOr(answer.inapps).map(one => Number(objectOr(one).inapp_id) || 0)), variant_id: 1, priority: 10,
                         trigger: '', content: {type: 4, template_url: '${origin}/templates/banner', inappType: 4, layoutStyle: 4, buttonLayout: 0,
                                                template_layout: {height: 0.2, position: 7, ignoreSafeZone: false}}});
  const list = editableList(listOr(answer.inapps).filter(isObject), 'Add a campaign', newOne, campaignEntry);
  return {node: fieldset('Campaigns', list.node), write(edited) { edited.inapps = list.read(); }};
}

function campaignEntry(campaign) {
  const numbers = {inapp_id: 'ID', variant_id: 'Variant', trigger_count: 'Count', priority: 'Priority', frequency: 'Cap, seconds (-1: for good)', delay: 'Delay, seconds'};
  const controls = Object.fromEntries(Object.keys(numbers).map(name => [name, input(campaign[name], 'number')]));
  const trigger = input(campaign.trigger);
  const kind = make('select', {}, make('option', {value: ''}, 'once, by count'), make('option', {value: 'event'}, 'at every event'));
  kind.value = campaign.show_type === 'event' ? 'event' : '';
  const conditions = area(campaign.trigger_params, 2);
  const content = area(campaign.content, 4);
  const title = () => `Campaign ${controls.inapp_id.value || 'without an ID'}${trigger.value ? ', ' + trigger.value : ''}`;
  const summary = make('summary', {}, title());
  trigger.addEventListener('input', () => { summary.textContent = title(); });
  const node = make('details', {open: !campaign.trigger}, summary, make('div', {class: 'fields'}, field('Trigger', trigger), field('Shown', kind),
    ...Object.entries(numbers).map(([name, label]) => field(label, controls[name])),
    field('Conditions, JSON', conditions, '[{"key": "price", "op": "gt", "value": 100}]'), field('Content, JSON', content)));
  return {node, read() {
    const edited = {...campaign};
    for (const [name, control] of Object.entries(controls)) setOrRemove(edited, name, numberIn(control, name));
    setOrRemove(edited, 'trigger', trigger.value.trim() || undefined);
    if (kind.value) edited.show_type = kind.value;
    else if (edited.show_type === 'event') delete edited.show_type;
    setOrRemove(edited, 'trigger_params', jsonIn(conditions, 'trigger_params'));
    setOrRemove(edited, 'content', jsonIn(content, 'content'));
    return edited;
  }};
}

function area(value, rows) {
  const control = make('textarea', {rows, spellcheck: 'false'});
  control.value = value === undefined ? '' : JSON.stringify(value, null, 1);
  return control;
}

function contents(answer) {
  const list = editableList(listOr(answer.contents).filter(isObject), 'Add a content', () => ({content_id: 1, variant_id: 1, variables: [{variable_name: '', new_value: ''}]}), content => {
    const id = input(content.content_id, 'number');
    const variant = input(content.variant_id, 'number');
    const variables = area(content.variables, 3);
    return {node: make('div', {class: 'fields'}, field('Content ID', id), field('Variant', variant), field('Variables, JSON', variables)), read() {
      const edited = {...content};
      setOrRemove(edited, 'content_id', numberIn(id, 'content_id'));
      setOrRemove(edited, 'variant_id', numberIn(variant, 'variant_id'));
      setOrRemove(edited, 'variables', jsonIn(variables, 'variables'));
      return edited;
    }};
  });
  return {node: fieldset('Content', list.node), write(edited) { edited.contents = list.read(); }};
}

function recommendations(answer) {
  const entries = Object.entries(objectOr(answer.smart_recommendations));
  const list = editableList(entries, 'Add a recommendation', () => ['', ''], ([name, value]) => {
    const id = input(name);
    const url = input(value);
    return {node: make('div', {class: 'fields'}, field('Campaign', id), field('Address', url)), read: () => [id.value.trim(), isObject(value) ? jsonIn(url, 'The address') : url.value]};
  });
  return {node: fieldset('Recommendations', list.node, make('p', {class: 'hint'}, 'The products are in recommendations.json, below.')),
          write(edited) { edited.smart_recommendations = Object.fromEntries(list.read().filter(([id]) => id)); }};
}

// --- Any file ---

function fileForm(found, save, takeBack) {
  const choice = make('select', {onchange: () => show()}, ...found.map(one => make('option', {value: one.file}, `${one.file} (${one.path})`)));
  const text = make('textarea', {rows: 14, spellcheck: 'false'});
  const tag = make('span', {class: 'tag'});
  const actions = make('div', {});
  const show = () => {
    const file = found.find(one => one.file === choice.value);
    text.value = file.text;
    tag.textContent = file.from;
    actions.replaceChildren(buttons(file.file, file.from, takeBack));
  };
  choice.value = 'recommendations.json';
  show();
  return make('form', {'aria-label': 'Any answer', onsubmit: event => { event.preventDefault(); save(choice.value, text.value); }},
    make('h2', {}, 'Any answer ', tag), field('File', choice), field('JSON', text, '${origin} is this address, ${uuid} a fresh identifier'), actions);
}

// --- Consents ---

function consentTable(devices, tell) {
  if (devices.length === 0) return make('p', {class: 'hint'}, 'No device has posted one yet; consent_get.json answers for it.');
  const rows = devices.slice(-50).reverse().map(device => make('tr', {}, make('th', {scope: 'row'}, textOr(device.udid)),
    ...['gdpr_consent', 'mobile_gdpr_consent'].map(name => make('td', {}, consentChoice(device, name, tell)))));
  return make('table', {}, make('thead', {}, make('tr', {}, ...['Device', 'gdpr_consent', 'mobile_gdpr_consent'].map(one => make('th', {scope: 'col'}, one)))), make('tbody', {}, ...rows));
}

function consentChoice(device, name, tell) {
  const select = make('select', {'aria-label': `${name} of ${textOr(device.udid)}`, onchange: async () => {
    const response = await ask('PUT', '/inspect/consents', {udid: device.udid, [name]: select.value === 'true'});
    tell(response.error ?? `${name} is ${consentChoices[select.value]} from the next request on.`, Boolean(response.error));
  }}, ...(name in device ? [] : [make('option', {value: '', disabled: true}, 'not posted')]),
  ...Object.entries(consentChoices).map(([value, label]) => make('option', {value}, label)));
  select.value = name in device ? String(device[name]) : '';
  return select;
}
