import assert from 'node:assert/strict';
import {test} from 'node:test';
import {play, startBackend} from './backend.mjs';
import {judgeOf} from './page/gates.js';
import {Store} from './page/store.js';

const page = {type: 4, template_url: 'http://127.0.0.1:1/page', inappType: 4, layoutStyle: 4};
const finish = {template: {finish: true}};
const device = facts => ({device: facts});

// What the library itself says of each gate, in the order of its way to the screen: [content and limits, the steps around
// the event, the gate, the sentence]. "event" stands for the event that triggers it.
const cases = [
  [{frequency: -1}, ['event', finish, {advance: 1}, {template: {send: {dismiss: {dismiss: 1}}}}, {advance: 1}, 'event'], null, /^It was shown\. Later: It was shown before/],
  [{}, [device({orientation: 'landscape'}), 'event', device({orientation: 'portrait'})], 'screen', /sideways when its event came/],
  [{}, [{call: 'tagEvent:', args: ['trigger_0_blocker'], then: [{call: 'build'}]}, 'event', {call: 'removeInapp'}, {advance: 1}], 'screen', /Another message was on the screen/],
  [{}, [{call: 'disableInAppMessages'}, 'event', {call: 'enableInAppMessages'}], 'allowed', /hides messages/],
  [{}, ['event', finish, {advance: 1}, {call: 'disableInAppMessages'}, {call: 'enableInAppMessages'}, {advance: 1}], null, /Later: The application hid messages/],
  [{content: {...page, type: -1}}, ['event'], 'group', /control group/],
  [{content: {type: 4}}, ['event'], 'page', /neither an address nor a picture/],
  [{content: {...page, type: 2}}, ['event'], 'page', /not of the kind that is shown/],
  [{content: {...page, template_url: 'ftp://host/page'}}, ['event'], 'page', /address of its page cannot be used/],
  [{}, ['event', {template: {fail: {domain: 'NSURLErrorDomain', code: -1200, provisional: true}}}, {call: 'removeInapp'}, {advance: 1}], 'page', /could not be loaded/],
  [{}, ['event', {template: {terminated: true}}, {call: 'removeInapp'}, {advance: 1}], 'page', /process that draws its page ended/],
  [{}, ['event', {advance: 61}, {call: 'removeInapp'}, {advance: 1}], 'page', /not been loaded within a minute/],
  [{}, ['event', {call: 'removeInapp'}, {advance: 1}], 'page', /removed while its page was still loading/],
  [{delay: 5}, ['event', finish, {advance: 1}, {call: 'removeInapp'}, {advance: 1}], 'moment', /before its delay had passed/],
  [{delay: 2}, ['event', finish, {advance: 1}, device({orientation: 'landscape'}), {advance: 2}, device({orientation: 'portrait'})], 'moment', /sideways when it was to appear/],
  [{}, ['event', device({app_state: 'background'}), finish, device({app_state: 'active'}), {call: 'removeInapp'}, {advance: 1}], 'moment', /in the background/],
  [{}, ['event', device({keyboard_open: true}), finish, device({keyboard_open: false}), {advance: 1}], 'moment', /keyboard was open/],
];

test('each gate at which the library stops is named in plain words', async () => {
  const {origin, end} = await startBackend();
  try {
    const inapps = cases.map(([limits], i) => ({inapp_id: i + 1, trigger: 'trigger_' + i, show_type: 'event', content: page, ...limits}));
    inapps.push({inapp_id: 90, trigger: 'trigger_0_blocker', show_type: 'event', content: page});
    await fetch(origin + '/inspect/answer', {method: 'PUT', body: JSON.stringify({path: '/api/v3/session/start', body: {session_id: 'gates', is_logging_enabled: true, log_flush_time_interval: 30, inapps}})});
    const steps = cases.flatMap(([, around], i) => around.map(step => (step === 'event' ? {call: 'tagEvent:', args: ['trigger_' + i], then: [{call: 'build'}]} : step)));
    const {status, said} = await play(origin, {name: 'gates', clock: {start: 1767225600}, preset: {defaults: {ORBINEL_ID: 'known'}}, steps: [
      {call: 'initWithLaunchOptions:partnerName:appGroup:customEndpoint:', args: [null, 'acme', 'group.acme', '${endpoint}']},
      {notify: 'UIApplicationDidBecomeActiveNotification'}, {settle: 5}, ...steps, {advance: 31}, {settle: 5},
      {notify: 'UIApplicationDidEnterBackgroundNotification'}, {settle: 5}]});
    assert.equal(status, 0, said);
    const store = new Store();
    store.take({run: 1, requests: await (await fetch(origin + '/inspect/requests')).json()});
    const {campaigns, verdictOf} = judgeOf(store.sessions[0]);
    const verdicts = campaigns.map(verdictOf);
    cases.forEach(([, , gate, sentence], i) => {
      assert.match(verdicts[i].sentence, sentence, `case ${i}`);
      assert.equal(verdicts[i].gate, gate, `case ${i}: ${verdicts[i].sentence}`);
      assert.ok(verdicts[i].sure, `case ${i}: the log says it`);
    });
  } finally {
    await end();
  }
});
