import {definitions, make} from './dom.js';
import {brief, count, listOr, numberOr, objectOr, textOr, timeOf} from './format.js';
import {conditionHolds, conditionsOf, conditionText, gates, isEventBased, judgeOf, parameterOf, priorityOf} from './gates.js';
import {sessionTitle} from './rows.js';
import {filterInSlices} from './slices.js';

const signs = {passed: '✓', stopped: '✕', 'not reached': '·'};
const portion = 50;  // campaigns drawn at once
const mostLines = 12;

/** Beside each campaign of a session: what it asks for, what happened, and the gate that stopped it. */
export function whyView(context) {
  const select = make('select', {id: 'why-session', onchange: () => { location.hash = '#/why/' + select.value; }});
  const only = make('input', {type: 'checkbox', onchange: () => draw()});
  const list = make('ol', {class: 'cards', 'aria-label': 'Campaigns'});
  const note = make('p', {class: 'note'});
  const node = make('div', {class: 'page'},
    make('div', {class: 'filters'}, make('label', {for: 'why-session'}, 'Session'), select, make('label', {class: 'chip'}, only, 'Only those not shown')),
    note, list);
  let wanted = '';
  let drawn = '';
  let cancel = () => {};

  function draw() {
    cancel();
    const session = context.store.sessions.find(one => one.key === select.value);
    if (!session) { list.replaceChildren(); note.textContent = 'No session has started yet.'; return; }
    const search = context.search;
    const {campaigns, verdictOf} = judgeOf(session);
    const passes = one => (!only.checked || verdictOf(one).shown === 0) && (!search || JSON.stringify(one).toLowerCase().includes(search));
    cancel = filterInSlices(campaigns, passes, found => {
      note.textContent = noteAbout(session, found.length);
      drawPortion(list, found, verdictOf);
    });
  }

  return {
    node,
    open(key) { wanted = key; drawn = ''; },
    update() {
      offerSessions(select, context.store.sessions, wanted);
      const session = context.store.sessions.find(one => one.key === select.value);
      const state = `${select.value} ${session?.version} ${context.search}`;
      if (state !== drawn) { drawn = state; draw(); }
    },
  };
}

function offerSessions(select, sessions, wanted) {
  const offered = sessions.filter((one, i) => i >= sessions.length - 200 || one.key === wanted).reverse();
  const withCampaigns = offered.find(one => listOr(one.answer.inapps).length > 0) ?? offered[0];
  const chosen = (offered.find(one => one.key === wanted) ?? withCampaigns)?.key ?? '';
  const keys = offered.map(one => one.key).join();
  if (select.dataset.keys !== keys) {
    select.dataset.keys = keys;
    select.replaceChildren(...offered.map(one => make('option', {value: one.key}, `${timeOf((one.start ?? one.stop).time)} ${sessionTitle(one)}`)));
  }
  if (select.value !== chosen) select.value = chosen;
}

function noteAbout(session, drawn) {
  if (listOr(session.answer.inapps).length === 0) return 'The start of this session delivered no campaigns.';
  const missing = [!session.stop && 'The session still runs: its events come with its stop.',
                   session.logs.length === 0 && 'No diagnostic log came: what the events do not say is worked out.'];
  return [`${drawn} of the campaigns that its start delivered.`, ...missing].filter(Boolean).join(' ');
}

/** Draws a portion of the campaigns; the next one waits for a button. */
function drawPortion(list, campaigns, verdictOf, from = 0) {
  if (from === 0) list.replaceChildren();
  list.append(...campaigns.slice(from, from + portion).map(one => card(verdictOf(one))));
  if (campaigns.length <= from + portion) return;
  const button = make('button', {type: 'button', onclick: () => { button.parentNode.remove(); drawPortion(list, campaigns, verdictOf, from + portion); }},
                      `${campaigns.length - from - portion} more`);
  list.append(make('li', {class: 'more'}, button));
}

function card(verdict) {
  const {campaign, shown, gate, sentence, sure} = verdict;
  const label = shown > 0 ? 'Shown' : `Stopped at: ${gates[gate]}`;
  return make('li', {class: shown > 0 ? 'card good' : 'card bad'},
    make('h2', {}, `Campaign ${brief(campaign.inapp_id ?? 'without an ID', 60)}`),
    make('p', {class: 'verdict'}, make('strong', {}, label), ' ', sentence, sure ? '' : make('em', {}, ' (worked out)')),
    gateStrip(verdict),
    definitions([['Trigger', brief(campaign.trigger ?? 'none', 80)],
                 ['Conditions', conditionList(verdict)],
                 ['Count', countText(verdict)],
                 ['Cap', capText(campaign)],
                 ['Priority', `${priorityOf(campaign)}${isEventBased(campaign) ? ', at every event' : ', once a session'}`],
                 ['Delay', campaign.delay ? `${brief(campaign.delay, 20)} s` : '']]),
    logLines(verdict.lines));
}

function gateStrip({reached}) {
  return make('ol', {class: 'gates', 'aria-label': 'Gates'}, ...reached.map(({name, state}) =>
    make('li', {class: state.replace(' ', '-')}, make('span', {'aria-hidden': 'true'}, signs[state] + ' '), gates[name], make('span', {class: 'unseen'}, ', ' + state))));
}

function conditionList({campaign, facts}) {
  const conditions = conditionsOf(campaign);
  if (conditions.length === 0) return 'none';
  const last = facts.occurred.at(-1);
  return make('ul', {}, ...conditions.slice(0, 30).map(condition => {
    const holds = last && conditionHolds(condition, last.parameters);
    const was = last && parameterOf(last.parameters, objectOr(condition).key);
    return make('li', {}, conditionText(condition), last ? ` — ${holds ? '✓ held' : '✕ failed'}, last it was ${was === undefined ? 'missing' : brief(JSON.stringify(was), 40)}` : '');
  }));
}

function countText({campaign, facts}) {
  const {occurred, matching, needed} = facts;
  const came = `came ${count(occurred.length, 'time')}` + (occurred.length === matching.length ? '' : `, ${matching.length} met the conditions`);
  return `due at number ${needed}${isEventBased(campaign) ? ' and each after it' : ''}; ${came}`;
}

function capText({frequency}) {
  if (frequency === undefined || frequency === null) return 'none';
  return frequency === -1 ? 'once on a device, for good' : `once in ${brief(numberOr(frequency, frequency), 20)} s`;
}

function logLines(lines) {
  if (lines.length === 0) return null;
  return make('details', {}, make('summary', {}, `What the log says of it (${lines.length})`),
    make('ol', {class: 'lines'}, ...lines.slice(-mostLines).map(line =>
      make('li', {}, make('span', {class: 'time'}, timeOf(line.time)), ' ', textOr(line.message), ' ', make('span', {class: 'about'}, brief(line.attributes))))));
}
