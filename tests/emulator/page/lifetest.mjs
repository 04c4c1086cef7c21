// The page when it starts anew, waits, or loses its connection:
// FREMULATOR=program FRHOST=program AXE=axe.min.js node --test lifetest.mjs
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {once} from 'node:events';
import {mkdtempSync, writeFileSync} from 'node:fs';
import http from 'node:http';
import {join} from 'node:path';
import {test} from 'node:test';
import {browser, emulator, openPage, openReceipt, password, port, report, root, rowOf, sell, startAll, startEmulator, startReplay,
  testThatNothingCameFromOtherSites} from './pagesupport.mjs';
import {scratch} from './webdriver.mjs';

startAll();

test('without receipts, the page shows how to send one, and the commands work', async () => {
  await startEmulator();
  await openPage('en');
  await browser.until("return document.getElementById('beginning').checkVisibility()");
  const facts = await browser.run("return document.querySelector('#beginning .facts').innerText");
  assert.match(facts, /shop[^]*group/);
  await browser.run("navigator.clipboard.writeText = text => { window.copied = text; return Promise.resolve(); }");
  await browser.click('#beginning .copy');
  const commands = await browser.until('return window.copied');
  assert.ok(!commands.includes(password));
  const answer = execFileSync('bash', ['-c', commands.replace('the password', password)], {encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore']});
  assert.equal(JSON.parse(answer).error, null, answer);
  await browser.until(`return ${rowOf('curl-')}`);
  await browser.until("return document.querySelector('#qr')", 'the first receipt is opened');
});

test('a page whose first request fails or hangs says so and tries again', async () => {
  await browser.call('POST', '/goog/cdp/execute', {cmd: 'Page.addScriptToEvaluateOnNewDocument', params: {source: `
    window.starts = 0;
    const real = window.fetch;
    window.fetch = (url, options) => {
      if (!url.endsWith('service') || ++starts > 3) return real(url, options);
      if (starts === 2) return Promise.resolve(new Response('<h1>502</h1>'));
      return starts === 1 ? Promise.reject(new TypeError('no'))
        : new Promise((_, reject) => options.signal.addEventListener('abort', () => reject(options.signal.reason)));
    };`}});
  await browser.goto(root);
  const visible = id => browser.run('return document.getElementById(arguments[0]).checkVisibility()', id);
  await browser.until("return document.getElementById('starting').checkVisibility()");
  assert.match(await browser.run("return document.querySelector('#starting p').innerText"), /^The emulator does not answer/);
  assert.equal(await visible('receipts'), false);
  // Once each for the answer that is not JSON, the one that never comes and the good one.
  for (const count of [2, 3, 4]) {
    await browser.run("document.getElementById('retry').click()");
    await browser.until('return starts >= arguments[0]', count);
  }
  await browser.until("return document.getElementById('live').className === 'on'");
  assert.equal(await visible('starting'), false);
  assert.equal(await visible('receipts'), true);
  await openPage('en');
});

test('callbacks are shown with the receipt, and so is why one was not made', async () => {
  const called = [];
  const program = http.createServer((request, response) => {
    request.on('data', chunk => called.push(JSON.parse(chunk)));
    request.on('end', () => { response.statusCode = 202; response.end(); });
  });
  await new Promise(resolve => { program.listen(0, '127.0.0.1', resolve); });
  try {
    await startEmulator('--allow-callbacks');
    await openPage('en');
    const at = url => sell(url.slice(0, 16), {}, {service: {callback_url: url}});
    await at(`http://127.0.0.1:${program.address().port}/done`);
    const calls = "return [...document.querySelectorAll('#detail .exchange summary')].map(one => one.innerText).join('; ')";
    await browser.until("return [...document.querySelectorAll('#detail .exchange summary')].some(one => one.innerText.includes('callback'))");
    assert.match(await browser.run(calls), /register HTTP 200; .*callback HTTP 202$/);
    assert.equal(called[0].status, 'done');
    await at('https://shop.example/done');
    await openReceipt('https://shop.exa');
    await browser.until("return [...document.querySelectorAll('#detail .exchange summary')].some(one => one.innerText.includes('not called'))");
    assert.match(await browser.run(calls), /callback not called\s+callback_url is not an http address/);
  } finally {
    program.close();
  }
});

test('a page of an emulator that replays a recording says so', async () => {
  await startEmulator();
  await sell('recorded');
  await sell('refused', {total: -1});
  const folder = mkdtempSync(join(scratch, 'recording-'));
  await openPage('en');
  await browser.run("document.getElementById('calls').open = true");
  const href = await browser.run("return document.getElementById('recording').href");
  writeFileSync(join(folder, 'recording.jsonl'), await (await fetch(href)).text());
  await startReplay(join(folder, 'recording.jsonl'));
  await openPage('en');
  await browser.until("return document.getElementById('beginning').innerText.includes('answers from a recording')");
  assert.equal((await sell('replayed')).status, 200);
  assert.equal(await browser.run("return document.getElementById('faults').checkVisibility()"), false, 'faults do not apply');
  assert.equal((await sell('wrong', {total: -1})).status, 400);
  await openReceipt('wrong');
  await browser.until("return document.querySelector('.verdict .field')?.innerText === 'receipt.total'");
  assert.match(await browser.run("return document.querySelector('#detail .wrong').textContent"), /"total": -1[^]*too small/);
  await browser.size(390, 844);
  assert.equal(await browser.run("return document.getElementById('panes').checkVisibility()"), false);
  await browser.size(1400, 1200);
  await browser.run("document.getElementById('calls').open = true");
  await browser.until("return document.getElementById('call-list').textContent.includes('register')");
  await startEmulator();
});

test('amounts are written as in Russia to Russian users', async () => {
  await openPage('ru');
  const item = {name: 'Сыр', price: 1114.76, quantity: 1, sum: 1114.76, vat: {type: 'vat10'}};
  await sell('roubles', {items: [item], payments: [{type: 1, sum: 1114.76}], total: 1114.76});
  assert.match(await browser.until(`return ${rowOf('roubles')}?.innerText`), /1\s114,76/);
  await openReceipt('roubles');
  await browser.until("return document.getElementById('opened-title').innerText.includes('roubles')");
  assert.match(await browser.run("return document.querySelector('.slip').innerText"), /ИТОГ\s+= 1\s114,76/);
});

test('waiting receipts are polled even after a failed request', async () => {
  await startEmulator('--latency', '5');
  await openPage('en');
  await browser.run(`const real = window.fetch;
    window.fetch = () => { window.fetch = real; window.failed = true; return Promise.reject(new TypeError('no')); }`);
  assert.equal((await sell('slow')).status, 200);
  await browser.until('return window.failed');
  assert.match(await browser.until(`return ${rowOf('slow')}?.innerText`), /waiting/);
  await browser.until(`return ${rowOf('slow')}?.innerText.includes('done')`);
});

test('an opened receipt shows its newest calls, however few are kept', async () => {
  await startEmulator('--keep', '1');
  await openPage('en');
  const {uuid} = JSON.parse((await sell('polled')).body);
  await openReceipt('polled');
  for (let shown = 1; shown <= 10; ++shown) {
    await browser.until("return document.querySelectorAll('#detail .exchange').length === arguments[0]", shown);
    await report(uuid);
  }
  await browser.until("return document.querySelectorAll('#detail .exchange').length === 11");
});

test('what happened while the connection was lost is shown once it is restored', async () => {
  const folder = mkdtempSync(join(scratch, 'state-'));
  await startEmulator('--db', join(folder, 'state'));
  await openPage('en');
  const {uuid} = JSON.parse((await sell('away')).body);
  await openReceipt('away');
  await browser.until("return document.querySelectorAll('#detail .exchange').length === 1");
  const ended = once(emulator, 'exit');
  emulator.kill();
  await ended;
  await browser.until("return document.getElementById('live').className === 'off'");
  await startEmulator('--db', join(folder, 'state'), '--port', port);
  // A browser takes seconds to reconnect.
  await report(uuid);
  await browser.until("return document.querySelectorAll('#detail .exchange').length === 2");
});

test('a receipt with very many calls shows the newest, and earlier ones on request', async () => {
  await startEmulator();
  const {uuid} = JSON.parse((await sell('busy')).body);
  for (let i = 0; i < 149; ++i) await report(uuid);
  await openPage('en');
  const shown = "return document.querySelectorAll('#detail .exchange').length === arguments[0]";
  await browser.until(shown, 100);
  await browser.click('#earlier');
  await browser.until(shown, 150);
  assert.match(await browser.run("return document.querySelector('#detail .exchange summary').innerText"), /register/);
  assert.equal(await browser.run("return document.getElementById('earlier').hidden"), true);
});

test('eight pages in one browser all show what happens', async () => {
  await startEmulator();
  await openPage('en');
  const tabs = [await browser.call('GET', '/window')];
  while (tabs.length < 8) {
    const {handle} = await browser.call('POST', '/window/new', {type: 'tab'});
    tabs.push(handle);
    await browser.call('POST', '/window', {handle});
    await browser.goto(root);
    await browser.until("return document.getElementById('live').className === 'on'");
  }
  assert.equal((await sell('everywhere')).status, 200);
  for (const handle of tabs) {
    await browser.call('POST', '/window', {handle});
    await browser.until(`return ${rowOf('everywhere')}`);
  }
});

test('a browser without shared workers closes the stream of every page that is left', async () => {
  await startEmulator();
  await openPage('en');
  await browser.call('POST', '/goog/cdp/execute', {cmd: 'Page.addScriptToEvaluateOnNewDocument', params: {source: `
    delete window.SharedWorker;
    window.EventSource = class extends EventSource {
      close() { super.close(); localStorage.closed = Number(localStorage.closed || 0) + 1; }
    };`}});
  for (let visit = 0; visit < 8; ++visit) {
    await browser.goto(`${root}?visit=${visit}`);
    assert.equal(await browser.run('return typeof SharedWorker'), 'undefined');
    await browser.until("return document.getElementById('live').className === 'on'");
    assert.equal(await browser.run('return Number(localStorage.closed || 0)'), visit);
  }
  assert.equal((await sell('without')).status, 200);
  await browser.until(`return ${rowOf('without')}`);
});

testThatNothingCameFromOtherSites();
