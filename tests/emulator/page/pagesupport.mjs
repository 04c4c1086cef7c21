// What the tests of the emulator's page have in common: an emulator, a browser and a client.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {existsSync} from 'node:fs';
import net from 'node:net';
import {after, before, test} from 'node:test';
import {Browser, keys, lineOf} from './webdriver.mjs';

export const {FREMULATOR: program, AXE: axe, FRHOST: host} = process.env;
export const password = 'password-that-must-not-be-shown';
export let emulator, browser, root, port, token;
const requested = [];

/** Sends a request over a plain socket; returns status, head and body of the answer. */
export function exchange(method, path, body, headers = {}) {
  const lines = Object.entries({Host: '127.0.0.1', Connection: 'close',
    'Content-Type': 'application/json; charset=utf-8', 'Content-Length': Buffer.byteLength(body), ...headers});
  return new Promise((resolve, reject) => {
    const socket = net.connect(port, '127.0.0.1');
    let answer = '';
    socket.setEncoding('utf8');
    socket.on('data', chunk => { answer += chunk; });
    socket.on('error', reject);
    socket.on('end', () => {
      const [head, text] = answer.split('\r\n\r\n');
      resolve({status: Number(head.slice(9, 12)), head, body: text ?? ''});
    });
    socket.write(`${method} ${path} HTTP/1.1\r\n` + lines.map(([name, value]) => `${name}: ${value}\r\n`).join('') +
      '\r\n' + body);
  });
}

export const service = '/possystem/v4/';

async function takeToken() {
  const answer = await exchange('POST', service + 'getToken', JSON.stringify({login: 'shop', pass: password}));
  token = JSON.parse(answer.body).token;
}

/** Sells a receipt of 150.50 roubles with some keys changed, `others` of them outside of the receipt; returns the service's answer. */
export function sell(id, changes = {}, others = {}) {
  const receipt = {
    client: {email: 'buyer@example.com'},
    company: {email: 'shop@example.com', sno: 'osn', inn: '7700000000', payment_address: 'shop.example'},
    items: [{name: 'Молоко 3,2 %', price: 75.25, quantity: 2, sum: 150.5, payment_method: 'full_payment',
      payment_object: 'commodity', vat: {type: 'vat10'}}],
    payments: [{type: 1, sum: 150.5}], total: 150.5, ...changes
  };
  const body = JSON.stringify({timestamp: '01.03.2026 10:00:00', external_id: id, ...others, receipt});
  return exchange('POST', service + 'group/sell', body, {Token: token});
}

export async function report(uuid) {
  return JSON.parse((await exchange('GET', service + 'group/report/' + uuid, '', {Token: token})).body);
}

export const rowOf = id => `[...document.querySelectorAll('#list button')].find(row => row.innerText.includes('${id}'))`;
// Defines a function that sets a field of the form as a user does.
export const chooseInForm = `const choose = (id, value) => {
  document.getElementById(id).value = value;
  document.getElementById(id).dispatchEvent(new Event('change'));
};`;
export const focused = 'return document.activeElement === document.body ? "" : document.activeElement.innerText';

export async function tabTo(what) {
  for (let i = 0; i < 100; ++i) {
    if ((await browser.run(focused)).includes(what)) return;
    await browser.press(keys.tab);
  }
  assert.fail(`${what} cannot be reached by keyboard`);
}

export async function violations() {
  const run = 'const done = arguments[0]; axe.run(document).then(found => done(found.violations), error => done(String(error)))';
  const found = await browser.runAsync(run);
  return found.map(one => `${one.id}: ${one.nodes.map(node => node.html).join(' ')}`);
}

export async function openPage(language) {
  if (browser) await leavePage();
  browser = await Browser.start({language});
  await browser.goto(root);
  await browser.until("return document.getElementById('live').innerText !== ''");
}

export async function openReceipt(id) {
  await browser.until(`return ${rowOf(id)}`);
  await browser.run(`${rowOf(id)}.click()`);
}

async function leavePage() {
  requested.push(...await browser.requests());
  await browser.stop();
}

async function run(options) {
  emulator?.kill();
  emulator = spawn(program, options, {stdio: ['ignore', 'pipe', 'inherit']});
  [, root, port] = await lineOf(emulator, /listening on (http:\/\/127\.0\.0\.1:(\d+)\/)possystem/);
  await takeToken();
}

/** Starts a new emulator for the tests that follow. */
export async function startEmulator(...options) {
  const free = options.includes('--port') ? [] : ['--port', '0'];
  await run([...free, '--login', 'shop', '--password', password, '--group', 'group', ...options]);
}

/** Starts one that answers from a recording. */
export async function startReplay(file) {
  await run(['--replay', file]);
}

export function useToken(other) {
  token = other;
}

/** Starts the emulator and the browser, and stops them after the last test. */
export function startAll() {
  before(async () => {
    for (const [name, path] of Object.entries({FREMULATOR: program, AXE: axe, FRHOST: host}))
      assert.ok(path && existsSync(path), `${name} must name a file, not ${path}`);
    await startEmulator();
    await openPage('en');
  });

  after(async () => {
    emulator?.kill();
    await browser?.stop();
  });
}

/** To be called after all tests. */
export function testThatNothingCameFromOtherSites() {
  test('nothing was fetched from other sites', async () => {
    await leavePage();
    browser = undefined;
    assert.ok(requested.some(url => url.endsWith('/_emulator/effects')), requested.join(' '));
    const elsewhere = requested.filter(url => !/^(http:\/\/127\.0\.0\.1:\d+\/|data:)/.test(url));
    assert.deepEqual(elsewhere, []);
  });
}
