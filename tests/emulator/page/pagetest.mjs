// Drives the emulator's page in headless Chromium: FREMULATOR=program AXE=axe.min.js node --test pagetest.mjs
// With FRHOST=program a receipt is also sold through the register's own host program.
import assert from 'node:assert/strict';
import {execFileSync, spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import net from 'node:net';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Browser, keys, lineOf} from './webdriver.mjs';

const {FREMULATOR: program, AXE: axe, FRHOST: host} = process.env;
const password = 'password-that-must-not-be-shown';
let emulator, browser, root, port, token;

/** One request over a plain socket: HTTP status and body. */
function exchange(method, path, body, headers = {}) {
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

const service = '/possystem/v4/';

async function takeToken() {
  const answer = await exchange('POST', service + 'getToken', JSON.stringify({login: 'shop', pass: password}));
  token = JSON.parse(answer.body).token;
}

/** Sells one receipt of 150.50 roubles; the answer of the service. */
function sell(id) {
  const receipt = {
    client: {email: 'buyer@example.com'},
    company: {email: 'shop@example.com', sno: 'osn', inn: '7700000000', payment_address: 'shop.example'},
    items: [{name: 'Молоко 3,2 %', price: 75.25, quantity: 2, sum: 150.5, payment_method: 'full_payment',
      payment_object: 'commodity', vat: {type: 'vat10'}}],
    payments: [{type: 1, sum: 150.5}], total: 150.5
  };
  const body = JSON.stringify({timestamp: '01.03.2026 10:00:00', external_id: id, receipt});
  return exchange('POST', service + 'group/sell', body, {Token: token});
}

async function report(uuid) {
  return JSON.parse((await exchange('GET', service + 'group/report/' + uuid, '', {Token: token})).body);
}

const rowOf = id => `[...document.querySelectorAll('#list button')].find(row => row.innerText.includes('${id}'))`;
const focused = 'return document.activeElement === document.body ? "" : document.activeElement.innerText';

async function tabTo(what) {
  for (let i = 0; i < 100; ++i) {
    if ((await browser.run(focused)).includes(what)) return;
    await browser.press(keys.tab);
  }
  assert.fail(`the keyboard does not reach ${what}`);
}

async function violations() {
  const run = 'const done = arguments[0]; axe.run(document).then(found => done(found.violations), error => done(String(error)))';
  const found = await browser.runAsync(run);
  return found.map(one => `${one.id}: ${one.nodes.map(node => node.html).join(' ')}`);
}

async function openPage(language) {
  browser = await Browser.start({language});
  await browser.goto(root);
  await browser.until("return document.getElementById('live').innerText !== ''");
}

before(async () => {
  emulator = spawn(program, ['--port', '0', '--login', 'shop', '--password', password, '--group', 'group'],
    {stdio: ['ignore', 'pipe', 'inherit']});
  [, root, port] = await lineOf(emulator, /listening on (http:\/\/127\.0\.0\.1:(\d+)\/)possystem/);
  await takeToken();
  await openPage('en');
});

after(async () => {
  await browser?.stop();
  emulator.kill();
});

test('a receipt appears without a reload', async () => {
  await browser.run('window.sameDocument = true');
  assert.equal((await sell('till-1')).status, 200);
  const text = await browser.until(`return ${rowOf('till-1')}?.innerText`);
  assert.match(text, /till-1[^]*150\.50[^]*done/);
  assert.equal(await browser.run('return window.sameDocument'), true);
});

test('a receipt sold by the host program appears without a reload', {skip: host ? false : 'FRHOST is not set'}, async () => {
  const folder = mkdtempSync(join(tmpdir(), 'fremulator-host-'));
  writeFileSync(join(folder, 'register.ini'), `[register]
url=${root}possystem/v4/
login=shop
password=${password}
groupCode=group
requestInterval=200
email=shop@example.com
inn=7700000000
paymentAddress=https://shop.example
`, {mode: 0o600});
  writeFileSync(join(folder, 'receipt.json'), JSON.stringify({id: 'host-1',
    requisites: [{tag: 1008, value: 'buyer@example.com'}],
    positions: [{name: 'Хлеб', price: 30, quantity: 1, sum: 30}], payments: [{type: 1, sum: 30}]}));
  const sold = spawn(host, ['--config', join(folder, 'register.ini'), 'sell', join(folder, 'receipt.json')],
    {stdio: ['ignore', 'ignore', 'pipe']});
  let complaint = '';
  sold.stderr.on('data', chunk => { complaint += chunk; });
  const status = await new Promise(resolve => sold.on('close', resolve));
  rmSync(folder, {recursive: true});
  assert.equal(status, 0, complaint);
  assert.match(await browser.until(`return ${rowOf('host-1')}?.innerText`), /host-1[^]*30\.00[^]*done/);
  assert.equal(await browser.run('return window.sameDocument'), true);
});

test('a receipt opens as a slip with its fiscal data beside the exchange', async () => {
  await browser.run(`${rowOf('till-1')}.click()`);
  const uuid = await browser.until("return document.querySelector('#qr') && location.hash.slice(1)");
  const {payload} = await report(uuid);
  const slip = await browser.run("return document.querySelector('.slip').innerText");
  for (const part of ['shop.example', 'INN 7700000000', 'SALE', 'Молоко 3,2 %', '2 × 75.25', 'VAT 10%', '13.68',
    'card', 'buyer@example.com', payload.receipt_datetime, payload.fn_number, payload.ecr_registration_number,
    String(payload.fiscal_document_number), String(payload.fiscal_document_attribute)])
    assert.ok(slip.includes(part), `${part} is missing in ${slip}`);
  await browser.until("return document.querySelectorAll('#detail details').length >= 2");
  const wire = await browser.run("return document.querySelector('#detail pre').textContent");
  assert.match(wire, /^POST \/possystem\/v4\/group\/sell HTTP\/1\.1\r?\n/);
  assert.match(wire, /Token: \*\*\*/);
});

test('what is opened stays open while more arrives', async () => {
  const uuid = await browser.run('return location.hash.slice(1)');
  const count = await browser.run(`document.querySelector('#detail details').open = true;
    return document.querySelectorAll('#detail details').length`);
  await report(uuid);
  await browser.until('return document.querySelectorAll("#detail details").length === arguments[0]', count + 1);
  assert.equal(await browser.run("return document.querySelector('#detail details').open"), true);
});

test('the QR code on the slip is read by a decoder', async () => {
  const {payload} = await report(await browser.run('return location.hash.slice(1)'));
  await browser.until("return document.querySelector('#qr').complete && document.querySelector('#qr').naturalWidth > 0");
  const folder = mkdtempSync(join(tmpdir(), 'fremulator-qr-'));
  writeFileSync(join(folder, 'qr.png'), await browser.picture('#qr'));
  const text = execFileSync('zbarimg', ['--raw', '--quiet', join(folder, 'qr.png')], {encoding: 'utf8'}).trim();
  rmSync(folder, {recursive: true});
  const [, day, month, year, hour, minute] = payload.receipt_datetime.match(/(\d\d)\.(\d\d)\.(\d{4}) (\d\d):(\d\d)/);
  assert.equal(text, `t=${year}${month}${day}T${hour}${minute}&s=150.50&fn=${payload.fn_number}` +
    `&i=${payload.fiscal_document_number}&fp=${payload.fiscal_document_attribute}&n=1`);
});

test('a fault set on the page hits the next sell', async () => {
  await browser.run(`const choose = (id, value) => {
      const box = document.getElementById(id);
      box.value = value;
      box.dispatchEvent(new Event('change'));
    };
    choose('endpoint', 'sell');
    choose('effect', 'html');
    document.getElementById('parameter').value = '503';`);
  await browser.click('#fault button[type=submit]');
  await browser.until("return document.querySelectorAll('#fault-list li').length === 1");
  const hit = await sell('till-2');
  assert.equal(hit.status, 503);
  assert.match(hit.head, /Content-Type: text\/html/);
  await browser.until("return document.querySelector('#fault-list').innerText.includes('hits: 1/1')");
  assert.equal((await sell('till-2')).status, 200);
  const row = await browser.until(`return ${rowOf('till-2')}?.innerText`);
  assert.match(row, /requests: 2/);
});

test('a fault that cannot be is refused with the reason', async () => {
  await browser.run("document.getElementById('parameter').value = '42'");
  await browser.click('#fault button[type=submit]');
  await browser.until("return document.getElementById('fault-error').innerText.includes('fault.status')");
});

test('the search narrows the list', async () => {
  await browser.run("document.getElementById('query').focus()");
  await browser.type('till-2');
  await browser.until("return document.querySelectorAll('#list li').length === 1");
  await browser.press(...Array(6).fill(keys.backspace));
  await browser.until(`return ${rowOf('till-1')} && ${rowOf('till-2')}`);
});

test('the keyboard reaches everything and works it', async () => {
  await browser.goto(root);
  await browser.until(`return ${rowOf('till-2')}`);
  const wanted = await browser.run(`return [...document.querySelectorAll('button, input, select, summary')]
    .filter(one => one.checkVisibility()).length`);
  await browser.run("window.reached = new Set(); document.addEventListener('focusin', event => reached.add(event.target))");
  for (let i = 0; i < wanted + 5; ++i) await browser.press(keys.tab);
  const missed = await browser.run(`return [...document.querySelectorAll('button, input, select, summary')]
    .filter(one => one.checkVisibility() && !reached.has(one)).map(one => one.outerHTML)`);
  assert.deepEqual(missed, []);

  await tabTo('till-2');
  const below = await browser.run(`return ${rowOf('till-2')}.closest('li').nextElementSibling.querySelector('.id').innerText`);
  await browser.press(keys.down, keys.enter);
  await browser.until("return document.getElementById('opened-title').innerText.includes(arguments[0])", below);
  await tabTo('Registered, but the answer was lost');
  await browser.press(keys.enter);
  await browser.until("return document.getElementById('fault-list').innerText.includes('answer was lost')");
  assert.equal((await sell('till-3')).head, '', 'the answer is lost');
  await browser.until(`return ${rowOf('till-3')}?.innerText`);
  for (let left = 2; left > 0; --left) {
    await tabTo('Remove');
    await browser.press(keys.enter);
    await browser.until(`return document.querySelectorAll('#fault-list li').length === ${left - 1}`);
  }
});

test('there is no accessibility violation, light or dark, in either language', async () => {
  const source = readFileSync(axe, 'utf8');
  for (const language of ['en', 'ru']) {
    if (language === 'ru') {
      await browser.stop();
      await openPage('ru');
      assert.equal(await browser.run("return document.getElementById('receipts-title').innerText"), 'Чеки');
    }
    await browser.run(`${rowOf('till-1')}.click()`);
    await browser.until("return document.querySelector('#qr')");
    await browser.run("for (const box of document.querySelectorAll('details')) box.open = true");
    await browser.click('#presets button');
    await browser.until("return document.querySelectorAll('#fault-list li').length > 0");
    await browser.run(source);
    for (const scheme of ['light', 'dark']) {
      await browser.colours(scheme);
      assert.deepEqual(await violations(), [], `${language}, ${scheme}`);
    }
  }
});

test('no secret is on the page and nothing was refused or failed in it', async () => {
  await browser.run("document.getElementById('calls').open = true");
  await browser.until("return document.getElementById('call-list').textContent.includes('getToken')");
  const everything = await browser.run('return document.documentElement.outerHTML');
  assert.ok(!everything.includes(password));
  assert.ok(!everything.includes(token));
  const log = await browser.log();
  assert.deepEqual(log.filter(entry => entry.level === 'SEVERE' && !entry.message.includes('400')), []);
});

test('all receipts are forgotten once that is confirmed', async () => {
  await browser.click('#clear');
  await browser.call('POST', '/alert/dismiss');
  assert.ok(await browser.run(`return ${rowOf('till-1')}`));
  await browser.click('#clear');
  await browser.call('POST', '/alert/accept');
  await browser.until("return document.querySelectorAll('#list li').length === 0");
});
