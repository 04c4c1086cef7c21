// Takes a picture of each state of the emulator's page: FREMULATOR=program PICTURES=folder node --test screenshots.mjs
// With KEPT=folder, checks that this folder has the same states. The pictures show times and never come out the same.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {mkdirSync, readdirSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {smallPng} from './smallpng.mjs';
import {Browser, lineOf} from './webdriver.mjs';

const {FREMULATOR: program, PICTURES: folder, KEPT: kept} = process.env;
const wide = [1360, 860], phone = [390, 780];
const largest = 100_000;
let emulator, browser, root, token;

async function call(path, body) {
  const headers = {'Content-Type': 'application/json; charset=utf-8', ...token ? {Token: token} : {}};
  return fetch(root + 'possystem/v4/' + path, {method: 'POST', headers, body: JSON.stringify(body)});
}

const item = (name, price, quantity) => ({name, price, quantity, sum: price * quantity, payment_method: 'full_payment',
  payment_object: 'commodity', vat: {type: 'vat10'}});

/** Sells two packs of milk and a loaf of bread with some keys of the receipt changed. */
function sell(id, changes = {}, group = 'shop_1') {
  const receipt = {client: {email: 'buyer@example.com'},
    company: {email: 'shop@example.com', sno: 'osn', inn: '7700000000', payment_address: 'shop.example'},
    items: [item('Молоко 3,2 %', 557.38, 2), item('Хлеб ржаной', 45.5, 1)], payments: [{type: 1, sum: 1160.26}], total: 1160.26, ...changes};
  return call(group + '/sell', {timestamp: '01.03.2026 10:00:00', external_id: id, receipt});
}

async function sellAll() {
  token = (await (await call('getToken', {login: 'shop', pass: 'secret'})).json()).token;
  await sell('till-1');
  const wrongVat = {...item('Хлеб ржаной', 45.5, 1), vat: {type: 'vat10', sum: 4.55}};
  await sell('till-2', {items: [item('Молоко 3,2 %', 557.38, 2), wrongVat]});
  const company = {email: 'shop@example.com', sno: 'osn', payment_address: 'shop.example'};
  const wrong = [item('Молоко 3,2 %', 557.38, 2), {...item('Хлеб ржаной', 45.5, 1), vat: {type: 'vat18'}}];
  await sell('till-3', {items: wrong});
  await sell('till-3', {items: wrong, company});
}

before(async () => {
  mkdirSync(folder, {recursive: true});
  emulator = spawn(program, ['--login', 'shop', '--password', 'secret', '--group', 'shop_1'], {stdio: ['ignore', 'pipe', 'inherit']});
  [, root] = await lineOf(emulator, /listening on (http:\/\/127\.0\.0\.1:\d+\/)possystem/);
});

after(async () => {
  await browser?.stop();
  emulator?.kill();
});

async function show(scheme, size) {
  await browser.colours(scheme);
  await browser.size(...size);
  await browser.goto(root);
  await browser.until("return document.getElementById('live').className === 'on'");
}

const open = id => browser.until(`const row = [...document.querySelectorAll('#list button')].find(one => one.innerText.includes('${id}'));
  row?.click();
  return row && document.getElementById('opened-title').innerText.includes('${id}')`);

const loaded = "return document.querySelector('#qr')?.complete";

// Name, language, colour scheme, size and what to do before the picture is taken.
const states = [
  ['empty', 'en', 'light', wide, () => browser.until("return document.getElementById('beginning').checkVisibility()")],
  ['refused', 'en', 'light', wide, () => browser.until("return document.querySelectorAll('.wrong').length === 2")],
  ['refused-dark', 'en', 'dark', wide, () => browser.until("return document.querySelectorAll('.wrong').length === 2")],
  ['registered', 'en', 'light', wide, async () => { await open('till-1'); await browser.until(loaded); }],
  ['registered-dark', 'en', 'dark', wide, async () => { await open('till-1'); await browser.until(loaded); }],
  ['failed', 'en', 'light', wide, async () => { await open('till-2'); await browser.until("return document.querySelector('.wrong')"); }],
  ['tries', 'en', 'light', wide, async () => {
    await browser.until("return document.querySelector('.tries')");
    await browser.run("document.querySelector('.tries').open = true");
    await browser.until("return document.querySelectorAll('.try').length === 2");
    await browser.run("document.getElementById('tries').scrollIntoView()");
  }],
  ['faults', 'en', 'light', wide, async () => {
    await browser.click('#presets button');
    await browser.run("document.getElementById('own-fault').open = true");
    await browser.until("return document.querySelector('#presets [aria-pressed=true]')");
  }],
  ['phone-list', 'en', 'light', phone, () => browser.until("return document.querySelectorAll('#list li').length === 3")],
  ['phone-refused', 'en', 'light', phone, async () => { await open('till-3'); await browser.until("return document.querySelector('.wrong')"); }],
  ['refused-ru', 'ru', 'light', wide, () => browser.until("return document.querySelectorAll('.wrong').length === 2")],
  ['refused-head', 'ru', 'dark', wide, async () => {
    await fetch(root + '_emulator/faults', {method: 'DELETE'});
    await sell('till-4', {}, 'shop_2');
    await open('till-4');
    await browser.until("return document.querySelectorAll('.wrong').length === 1");
  }]
];

for (const [name, language, scheme, size, prepare] of states) {
  test(`picture of ${name}`, async () => {
    if (browser?.language !== language) {
      await browser?.stop();
      browser = await Browser.start({language});
      browser.language = language;
    }
    if (name === 'refused') await sellAll();
    await show(scheme, size);
    await prepare();
    const picture = smallPng(await browser.screenshot());
    assert.deepEqual([picture.readUInt32BE(16), picture.readUInt32BE(20)], size);
    assert.ok(picture.length < largest, `${picture.length} bytes`);
    writeFileSync(join(folder, name + '.png'), picture);
  });
}

test('the documentation has a picture of every state and no others', {skip: !kept}, () => {
  assert.deepEqual(readdirSync(kept).sort(), states.map(([name]) => name + '.png').sort());
});
