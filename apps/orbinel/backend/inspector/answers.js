import {ask} from './ask.js';
import {field, make} from './dom.js';
import {listOr, textOr} from './format.js';
import {startParts} from './start_form.js';

// What devices are told, edited here. Nothing of it changes a file, and all of it counts from the next start on.

const startFile = 'session_start.json';
const consentPath = '/api/v1/privacy/gdpr/consent/set';
const consentChoices = {true: 'given', false: 'refused'};

/** Campaigns, contents, recommendations and switches of the session start; consents; every other answer as text. */
export function answersView(context) {
  const partners = make('datalist', {id: 'partners'});
  const partner = make('input', {list: 'partners', autocomplete: 'off', spellcheck: 'false', onchange: () => choosePartner()});
  const told = make('p', {role: 'status', class: 'told'});
  const forms = make('div', {});
  const consents = make('div', {});
  const tellConsent = (text, isBad = false) => tellIn(told, text, isBad);
  const node = make('div', {class: 'page'}, partners,
    make('div', {class: 'filters'}, field('Answers for the partner', partner, 'Empty: for every partner without its own')),
    forms, make('section', {'aria-label': 'Consents'}, make('h2', {}, 'Consents of devices'), consents, told));
  const sets = new Map();  // partner -> its forms, kept as long as they have edits
  let loaded = null;       // the run of the backend that is shown
  let consentsAfter = '';  // the request that the table of consents came after

  function choosePartner() {
    const name = partner.value.trim();
    for (const [other, forms] of sets) if (other !== name && !forms.hasEdits()) sets.delete(other);
    if (!sets.has(name)) sets.set(name, new PartnerForms(name));
    const chosen = sets.get(name);
    forms.replaceChildren(chosen.node);
    chosen.load();
  }

  /** Asked again once a device has posted, but not under the hands of a person who is choosing. */
  async function followConsents() {
    const {run, requests} = context.store;
    const last = `${run} ${requests.findLast(one => one.path === consentPath)?.key ?? ''}`;
    const isInUse = () => consents.contains(document.activeElement);
    if (last === consentsAfter || isInUse()) return;
    consentsAfter = last;
    const devices = await ask('GET', '/inspect/consents');
    if (devices.error) return tellConsent(devices.error, true);
    if (isInUse()) consentsAfter = '';
    else consents.replaceChildren(consentTable(listOr(devices), tellConsent));
  }
  consents.addEventListener('focusout', () => setTimeout(followConsents));

  addEventListener('beforeunload', event => {
    if ([...sets.values()].some(one => one.hasEdits())) event.preventDefault();
  });

  return {
    node,
    open() { loaded = null; consentsAfter = ''; },
    update() {
      const known = [...context.store.partners].slice(-200);
      if (partners.childElementCount !== known.length) partners.replaceChildren(...known.map(value => make('option', {value})));
      const run = context.store.run ?? 'none yet';
      if (loaded !== run) { loaded = run; choosePartner(); }
      followConsents();
    },
  };
}

function tellIn(node, text, isBad) {
  node.textContent = text;
  node.classList.toggle('problem', isBad);
}

/** The forms of one partner. Each keeps what is being edited in it, whatever becomes of the others. */
class PartnerForms {
  constructor(partner) {
    this.partner = partner;
    this.start = new EditedForm(this, 'Session start', source => startParts(source));
    this.any = new EditedForm(this, 'Any answer', source => fileParts(source, this));
    this.node = make('div', {}, this.start.node, this.any.node);
    this.chosenFile = 'recommendations.json';
    this.drafts = new Map();  // of the form for any file -> {text, source}
    this.asked = 0;
  }

  hasEdits() { return this.start.dirty || this.any.dirty || this.drafts.size > 0; }

  async load() {
    const asked = ++this.asked;
    const found = await ask('GET', '/inspect/answer-files?' + new URLSearchParams({partner: this.partner}));
    if (asked !== this.asked) return;
    if (found.error) return this.start.tell(found.error, true);
    this.found = found;
    this.start.offer(this.sourceOf(startFile));
    this.any.offer(this.sourceOf(this.chosenFile));
  }

  /** Another file in the form for any: what is edited in this one is there again when the person comes back to it. */
  chooseFile(file) {
    const {any, drafts} = this;
    if (any.dirty) drafts.set(this.chosenFile, {text: any.parts.read(), source: any.source});
    else drafts.delete(this.chosenFile);
    this.chosenFile = file;
    const draft = drafts.get(file);
    any.show(draft?.source ?? this.sourceOf(file));
    if (draft) { any.parts.write(draft.text); any.setDirty(true); }
    any.tell('');
    any.fields.querySelector('select').focus();
  }

  sourceOf(file) { return this.found.find(one => one.file === file); }
}

/** A form over one answer: what it was made from, whether it has edits, and what to do where somebody else saved first. */
class EditedForm {
  /** `makeParts` gives {nodes, read()} for a source; read() gives the text, or throws a sentence. */
  constructor(forms, title, makeParts) {
    Object.assign(this, {forms, title, makeParts, dirty: false});
    this.tag = make('span', {class: 'tag'});
    this.unsaved = make('span', {class: 'tag unsaved', hidden: true}, 'not saved');
    this.told = make('p', {role: 'status', class: 'told', tabindex: -1});
    this.choices = make('div', {class: 'actions'});
    this.fields = make('div', {});
    this.fields.addEventListener('input', () => this.setDirty(true));
    this.node = make('form', {'aria-label': title, onsubmit: event => { event.preventDefault(); this.submit(); }},
      make('h2', {}, title + ' ', this.tag, ' ', this.unsaved), this.fields, this.told, this.choices);
  }

  /** What the backend answers now: shown, unless there are edits, or it is what is there already. */
  offer(source) {
    if (this.dirty) return;
    if (this.source?.file !== source.file || this.source.text !== source.text) return this.show(source);
    const changes = this.source.from !== source.from || this.disputed;
    this.source = source;
    this.tag.textContent = source.from;
    if (changes) this.offerChoices();
  }

  show(source) {
    this.source = source;
    this.parts = this.makeParts(source);
    this.fields.replaceChildren(...this.parts.nodes);
    this.tag.textContent = source.from;
    this.setDirty(false);
    this.offerChoices();
  }

  setDirty(dirty) {
    this.dirty = dirty;
    this.unsaved.hidden = !dirty;
    if (dirty) tellIn(this.told, '', false);
  }

  offerChoices() {
    this.disputed = false;
    this.choices.replaceChildren(make('button', {type: 'submit', class: 'first'}, 'Put in force'),
      this.source.from === 'edited' ? make('button', {type: 'button', onclick: () => this.takeBack(this.source.version)}, 'Take back') : '');
  }

  tell(text, isBad = false) { tellIn(this.told, text, isBad); }

  submit(basedOn = this.source.version) {
    try {
      return this.save(this.parts.read(), basedOn);
    } catch (wrong) {
      this.tell(wrong.message, true);
    }
  }

  async save(text, version) {
    const {file} = this.source;
    const {partner} = this.forms;
    const response = await ask('PUT', '/inspect/answer-files', {partner, file, text, version});
    await this.after(response, `${file} is in force for ${partner || 'everybody'} from the next request on.`, () => this.submit(''), text);
  }

  async takeBack(version) {
    const {file} = this.source;
    const response = await ask('DELETE', '/inspect/answer-files?' + new URLSearchParams({file, partner: this.forms.partner, version}));
    await this.after(response, `${file} is taken from the directory again.`, () => this.takeBack(''));
  }

  async after(response, success, allTheSame, saved = this.source.text) {
    if (response.status === 409) return this.offerTheOther(response.error, allTheSame);
    if (response.error) return this.tell(response.error, true);
    this.setDirty(false);
    this.source = {...this.source, text: saved};
    this.forms.drafts.delete(this.source.file);
    await this.forms.load();
    this.tell(success);
    this.keepFocus();
  }

  /** Where the button that was pressed is gone, the keyboard goes on from the sentence about it. */
  keepFocus() { if (document.activeElement === document.body) this.told.focus(); }

  /** Nothing was overwritten, and nothing is lost: the person says whose text counts. */
  offerTheOther(sentence, allTheSame) {
    this.tell(sentence + ' What you see here has not been saved.', true);
    this.choices.replaceChildren(make('button', {type: 'button', class: 'first', onclick: allTheSame}, 'Overwrite the other change'),
      make('button', {type: 'button', onclick: async () => {
        this.setDirty(false);
        await this.forms.load();
        this.tell('This is what is in force.');
        this.keepFocus();
      }}, 'Drop mine, show the other'));
    this.disputed = true;
    this.keepFocus();
  }
}

// --- Any file ---

/** Each file keeps its own draft while another one is looked at. */
function fileParts(source, forms) {
  const choice = make('select', {}, ...forms.found.map(one => make('option', {value: one.file}, `${one.file} (${one.path})`)));
  const text = make('textarea', {rows: 14, spellcheck: 'false'});
  choice.value = source.file;
  text.value = source.text;
  // The choice alone is no edit.
  choice.addEventListener('input', event => event.stopPropagation());
  choice.addEventListener('change', () => forms.chooseFile(choice.value));
  return {nodes: [field('File', choice), field('JSON', text, '${origin} is this address, ${uuid} a fresh identifier')],
          read: () => text.value, write(draft) { text.value = draft; }};
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
