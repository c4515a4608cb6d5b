// Elements are only ever made here. What a device sent becomes text, never markup.

/** An element with attributes and listeners (`onclick`, …); children are elements or texts, others are left out. */
export function make(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name.startsWith('on')) node.addEventListener(name.slice(2), value);
    else if (name in node && typeof value === 'boolean') node[name] = value;
    else if (value !== undefined && value !== null && value !== false) node.setAttribute(name, value);
  }
  node.append(...children.filter(isContent).map(child => (child instanceof Node ? child : String(child))));
  return node;
}

function isContent(child) {
  return child !== null && child !== undefined && child !== false && child !== '';
}

let lastId = 0;

/** A control with its label; `hint` is read out with it. */
export function field(label, control, hint) {
  control.id ||= 'field-' + ++lastId;
  const parts = [make('label', {for: control.id}, label), control];
  if (hint) {
    control.setAttribute('aria-describedby', control.id + '-hint');
    parts.push(make('span', {class: 'hint', id: control.id + '-hint'}, hint));
  }
  return make('div', {class: 'field'}, ...parts);
}

/** A row of check boxes that say which kinds of entries a list has; `changed` gets the set of those that are on. */
export function kindFilter(legend, kinds, on, changed) {
  const boxes = Object.entries(kinds).map(([kind, label]) => {
    const box = make('input', {type: 'checkbox', checked: on.has(kind), onchange: () => {
      box.checked ? on.add(kind) : on.delete(kind);
      changed(on);
    }});
    return make('label', {class: 'chip'}, box, label);
  });
  return make('fieldset', {class: 'chips'}, make('legend', {class: 'unseen'}, legend), ...boxes);
}

export function definitions(entries) {
  return make('dl', {}, ...entries.filter(([, value]) => isContent(value)).map(([name, value]) =>
    make('div', {}, make('dt', {}, name), make('dd', {}, value))));
}

/** Copies a text and says so on the button for a moment. */
export function copyButton(label, text) {
  const button = make('button', {type: 'button', onclick: async () => {
    let told = 'Copied';
    try {
      await navigator.clipboard.writeText(text());
    } catch {
      told = 'The browser does not allow copying';
    }
    say(told);
    button.textContent = told;
    setTimeout(() => { button.textContent = label; }, 1500);
  }}, label);
  return button;
}

/** Tells people who do not see the page, once. */
export function say(text) {
  let speaker = document.getElementById('speaker');
  if (!speaker) document.body.append(speaker = make('p', {id: 'speaker', class: 'unseen', role: 'status'}));
  speaker.textContent = text;
}
