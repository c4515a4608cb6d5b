import assert from 'node:assert/strict';
import {test} from 'node:test';
import {example, play, startBackend} from './backend.mjs';
import {scenarioOf} from './page/scenario.js';
import {Store} from './page/store.js';

/** The sessions of what the backend has received since it was last asked. */
async function sessionsOf(origin) {
  const store = new Store();
  store.take({run: 1, requests: await (await fetch(origin + '/inspect/requests')).json()});
  for (const forgotten of ['requests', 'consents', 'identities']) await fetch(origin + '/inspect/' + forgotten, {method: 'DELETE'});
  return store.sessions;
}

const differing = new Set(['udid', 'orbinel_id', 'session_id', 'timestamp', 'request_url', 'universal_link', 'session_duration']);
const without = value => JSON.parse(JSON.stringify(value ?? null, (name, one) => (differing.has(name) ? undefined : one)));

/** All that a session made arrive, but for identifiers, addresses, times and the diagnostic log, which tells of those. */
function toldBy(session) {
  const others = session.requests.filter(request => request !== session.start && request !== session.stop && !request.path.includes('/logging/'));
  return {start: without(session.start?.payload.device_info), reason: session.start?.payload.reason, first: session.start?.payload.first_run,
          stop: without(session.stop?.payload), others: others.map(({path, query, payload}) => [path, query, JSON.stringify(without(payload))].join(' ')).sort()};
}

async function copiesAreTheSame(scenario) {
  const {origin, end} = await startBackend();
  try {
    assert.equal((await play(origin, scenario)).status, 0);
    const sessions = await sessionsOf(origin);
    for (const session of sessions) {
      const {scenario: copy} = scenarioOf(session);
      const {status, said} = await play(origin, copy);
      assert.equal(status, 0, said + JSON.stringify(copy));
      const again = await sessionsOf(origin);
      const copied = again.find(one => one.start.payload.reason === session.start.payload.reason);
      assert.deepEqual(toldBy(copied), toldBy(session), copy.name);
    }
    return sessions.map(session => scenarioOf(session));
  } finally {
    await end();
  }
}

for (const name of ['first-session', 'attributes', 'identity', 'consent', 'commerce', 'product', 'content', 'recommendations', 'push', 'in-app',
                    'in-app-conditions', 'message-center', 'wrapper']) {
  test(`the copy of each session of ${name} makes the same arrive`, async () => { await copiesAreTheSame(await example(name)); });
}

/** The scenarios of the requests, where those that an activation sends beside the start come in before or behind it. */
function copiesOf(requests, behind) {
  const [ordered, waiting] = [[], []];
  for (const request of requests) {
    if (behind && /consent|test_device/.test(request.path)) { waiting.push(request); continue; }
    ordered.push(request);
    if (request.path.endsWith('/session/start')) ordered.push(...waiting.splice(0));
  }
  const store = new Store();
  store.take({run: 1, requests: [...ordered, ...waiting].map((request, i) => ({...request, id: i + 1}))});
  return store.sessions.map(session => scenarioOf(session).scenario);
}

test('a copy is the same whichever of the requests of an activation arrives first', async () => {
  const {origin, end} = await startBackend();
  try {
    assert.equal((await play(origin, await example('content'))).status, 0);
    const requests = await (await fetch(origin + '/inspect/requests')).json();
    assert.ok(requests.some(request => request.path.endsWith('/test_device/add')));
    assert.deepEqual(copiesOf(requests, true), copiesOf(requests, false));
  } finally {
    await end();
  }
});

test('with the diagnostic log, what pages sent is sent again', async () => {
  const event = name => ({call: 'tagEvent:', args: [name], then: [{call: 'build'}]});
  const send = actions => ({template: {send: actions}});
  const kettle = {product_id: 'kettle', product_name: 'Kettle', product_taxonomy: ['Kitchen'], product_price: 29.5, product_image_url: 'https://shop.example/k.png', product_currency: 'EUR'};
  const [{scenario, notes}] = await copiesAreTheSame({name: 'pages', clock: {start: 1767225600}, preset: {defaults: {ORBINEL_ID: 'known'}}, steps: [
    {call: 'initWithLaunchOptions:partnerName:appGroup:customEndpoint:', args: [null, 'inapp', 'group.acme', '${endpoint}']},
    {notify: 'UIApplicationDidBecomeActiveNotification'}, {settle: 5},
    {call: 'visitHomepage'}, {template: {finish: true}}, {advance: 3}, send({silent_dismiss: {}}), {advance: 1},
    event('discount_seen'), {template: {finish: true}}, {advance: 1},
    send({event: [{name: 'voucher_taken', params: [{type: 'int', key: 'percent', value: 10}]}], item_cart: {cart_items: [kettle]}, copy: 'SUMMER-10'}), {advance: 1},
    event('from_the_shop'), send({survey: {question: 'How?', answer: 'well'}, lead: {mail: 'a@b.c'}, dismiss: {dismiss: 4}}), {advance: 31}, {settle: 5},
    event('purchase_done'), event('purchase_done'), {template: {finish: true}}, {advance: 1},
    send({send_click_data: {button: 'next'}}), send({survey: {question: 'Why?', answer: 'so'}}), {advance: 1}, {template: {tap: 'close'}}, {advance: 29},
    {notify: 'UIApplicationDidEnterBackgroundNotification'}, {settle: 5}]});
  assert.ok(scenario.steps.some(step => step.template?.send?.copy === 'SUMMER-10'));
  assert.ok(!scenario.steps.some(step => step.args?.[0] === 'voucher_taken'), 'the page tags it');
  assert.match(notes.join(), /delivers the same campaigns/);
});
