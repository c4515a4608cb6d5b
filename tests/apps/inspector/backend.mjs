// A backend of our own with a browser beside it, and plays against it.

import {spawn} from 'node:child_process';
import {once} from 'node:events';
import {readFile} from 'node:fs/promises';
import {chromium} from 'playwright-core';

const tool = process.env.ORBINEL;
export const examples = process.env.EXAMPLES;

export async function startBackend(port = '0') {
  const process = spawn(tool, ['backend', '--port', port, '--quiet', '--answers', examples + '/backend', '--templates', examples + '/templates']);
  const [line] = await once(process.stdout, 'data');
  const origin = /http:\/\/[^\s]+/.exec(line)[0];
  const post = (path, body, headers = {}) => fetch(origin + path, {method: 'POST', body: typeof body === 'string' ? body : JSON.stringify(body),
    headers: {'Content-Type': 'application/json', ts: '1767225600', 'X-Requested-With': 'acme', ...headers}});
  const end = async () => { process.kill('SIGTERM'); await once(process, 'exit'); };
  return {origin, post, end};
}

/** Plays a scenario, an object or a text; gives its exit status and what it said. */
export async function play(origin, scenario) {
  const process = spawn(tool, ['play', '--endpoint', origin, '-']);
  let said = '';
  process.stderr.on('data', data => { said += data; });
  process.stdout.resume();
  process.stdin.end(typeof scenario === 'string' ? scenario : JSON.stringify(scenario));
  const [status] = await once(process, 'exit');
  return {status, said};
}

export async function example(name) { return JSON.parse(await readFile(`${examples}/${name}.json`, 'utf8')); }

export function startBrowser() {
  return chromium.launch({executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox', '--disable-dev-shm-usage']});
}

/** A page that fails its test where anything is written to the console as an error or thrown. */
export async function openPage(browser, origin, options = {}) {
  const context = await browser.newContext({viewport: {width: 1280, height: 800}, permissions: ['clipboard-read', 'clipboard-write'], ...options});
  const page = await context.newPage();
  page.setDefaultTimeout(10_000);
  page.faults = [];
  page.origin = origin;
  page.on('pageerror', error => page.faults.push(error.message));
  page.on('console', message => { if (message.type() === 'error') page.faults.push(message.text()); });
  page.on('dialog', dialog => { page.faults.push('dialog: ' + dialog.message()); dialog.dismiss(); });
  await page.goto(origin + '/');
  return page;
}
