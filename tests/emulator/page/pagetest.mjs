// Tests the emulator's page in headless Chromium:
// FREMULATOR=program FRHOST=program AXE=axe.min.js node --test pagetest.mjs
import assert from 'node:assert/strict';
import {execFileSync, spawn} from 'node:child_process';
import {once} from 'node:events';
import {existsSync, mkdtempSync, readFileSync, writeFileSync} from 'node:fs';
import net from 'node:net';
import {join} from 'node:path';
import {after, before, test} from 'node:test';
import {Browser, keys, lineOf, scratch} from './webdriver.mjs';

const {FREMULATOR: program, AXE: axe, FRHOST: host} = process.env;
const password = 'password-that-must-not-be-shown';
let emulator, browser, root, port, token;
const requested = [];

/** Sends a request over a plain socket; returns status, head and body of the answer. */
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

/** Sells a receipt of 150.50 roubles with some keys changed; returns the service's answer. */
function sell(id, changes = {}) {
  const receipt = {
    client: {email: 'buyer@example.com'},
    company: {email: 'shop@example.com', sno: 'osn', inn: '7700000000', payment_address: 'shop.example'},
    items: [{name: 'Молоко 3,2 %', price: 75.25, quantity: 2, sum: 150.5, payment_method: 'full_payment',
      payment_object: 'commodity', vat: {type: 'vat10'}}],
    payments: [{type: 1, sum: 150.5}], total: 150.5, ...changes
  };
  const body = JSON.stringify({timestamp: '01.03.2026 10:00:00', external_id: id, receipt});
  return exchange('POST', service + 'group/sell', body, {Token: token});
}

async function report(uuid) {
  return JSON.parse((await exchange('GET', service + 'group/report/' + uuid, '', {Token: token})).body);
}

const rowOf = id => `[...document.querySelectorAll('#list button')].find(row => row.innerText.includes('${id}'))`;
// Defines a function that sets a field of the form as a user does.
const chooseInForm = `const choose = (id, value) => {
  document.getElementById(id).value = value;
  document.getElementById(id).dispatchEvent(new Event('change'));
};`;
const focused = 'return document.activeElement === document.body ? "" : document.activeElement.innerText';

async function tabTo(what) {
  for (let i = 0; i < 100; ++i) {
    if ((await browser.run(focused)).includes(what)) return;
    await browser.press(keys.tab);
  }
  assert.fail(`${what} cannot be reached by keyboard`);
}

async function violations() {
  const run = 'const done = arguments[0]; axe.run(document).then(found => done(found.violations), error => done(String(error)))';
  const found = await browser.runAsync(run);
  return found.map(one => `${one.id}: ${one.nodes.map(node => node.html).join(' ')}`);
}

async function openPage(language) {
  if (browser) await leavePage();
  browser = await Browser.start({language});
  await browser.goto(root);
  await browser.until("return document.getElementById('live').innerText !== ''");
}

async function openReceipt(id) {
  await browser.until(`return ${rowOf(id)}`);
  await browser.run(`${rowOf(id)}.click()`);
}

async function leavePage() {
  requested.push(...await browser.requests());
  await browser.stop();
}

/** Starts a new emulator for the tests that follow. */
async function startEmulator(...options) {
  emulator?.kill();
  const free = options.includes('--port') ? [] : ['--port', '0'];
  emulator = spawn(program, [...free, '--login', 'shop', '--password', password, '--group', 'group', ...options],
    {stdio: ['ignore', 'pipe', 'inherit']});
  [, root, port] = await lineOf(emulator, /listening on (http:\/\/127\.0\.0\.1:(\d+)\/)possystem/);
  await takeToken();
}

before(async () => {
  for (const [name, path] of Object.entries({FREMULATOR: program, AXE: axe, FRHOST: host}))
    assert.ok(path && existsSync(path), `${name} must name a file, not ${path}`);
  await startEmulator();
  await openPage('en');
});

after(async () => {
  await browser?.stop();
  emulator?.kill();
});

test('no script leaves a name in the global scope', async () => {
  const names = await browser.runAsync(`const done = arguments[0];
    const scripts = performance.getEntriesByType('resource').map(one => one.name).filter(name => name.endsWith('.js'));
    Promise.all(scripts.map(async name => (await fetch(name)).text())).then(texts => done(texts.flatMap(text =>
      [...text.matchAll(/^(?:export )?(?:async )?(?:function|const|let|class) (\\w+)/gm)].map(match => match[1]))))`);
  assert.ok(names.includes('ask') && names.includes('exchangeBox'), names.join(' '));
  const global = await browser.run('return {' + names.map(name => `${name}: typeof ${name}`).join(', ') + '}');
  const usual = await browser.run('return arguments[0].filter(name => name === "open" || document.getElementById(name))', names);
  assert.deepEqual(names.filter(name => global[name] !== 'undefined' && !usual.includes(name)), []);
});

test('a receipt appears without a reload', async () => {
  await browser.run('window.sameDocument = true');
  assert.equal((await sell('till-1')).status, 200);
  const text = await browser.until(`return ${rowOf('till-1')}?.innerText`);
  assert.match(text, /till-1[^]*150\.50[^]*done/);
  assert.equal(await browser.run('return window.sameDocument'), true);
});

test('a receipt sold by the host program appears without a reload', async () => {
  const folder = mkdtempSync(join(scratch, 'host-'));
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
  assert.equal(status, 0, complaint);
  assert.match(await browser.until(`return ${rowOf('host-1')}?.innerText`), /host-1[^]*30\.00[^]*done/);
  assert.equal(await browser.run('return window.sameDocument'), true);
});

test('a receipt opens as a slip with its fiscal data beside the exchange', async () => {
  await openReceipt('till-1');
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

test('a slip shows items without VAT and the VAT of the whole receipt', async () => {
  const line = (price, vat) => ({name: vat, price, quantity: 1, sum: price, vat: {type: vat}});
  const items = [line(100, 'vat0'), line(30.5, 'none'), line(20, 'vat120')];
  await sell('taxes', {items});
  await sell('whole', {items: [{name: 'A', price: 150.5, quantity: 1, sum: 150.5}], vats: [{type: 'vat20', sum: 25.08}]});
  const amounts = async id => {
    await openReceipt(id);
    await browser.until("return document.getElementById('opened-title').innerText.includes(arguments[0])", id);
    const pairs = await browser.run(`return [...document.querySelectorAll('.slip dl:first-of-type dt')]
      .map(name => [name.innerText, name.nextElementSibling.innerText])`);
    return Object.fromEntries(pairs.filter(([name]) => name.includes('VAT')));
  };
  assert.deepEqual(await amounts('taxes'), {'VAT 0%': '100.00', 'Without VAT': '30.50', 'VAT 20/120': '3.33'});
  assert.deepEqual(await amounts('whole'), {'VAT 20%': '25.08'});
  await openReceipt('till-1');
  await browser.until("return document.getElementById('opened-title').innerText.includes('till-1')");
});

test('opened exchanges stay open while more arrive', async () => {
  const uuid = await browser.run('return location.hash.slice(1)');
  const count = await browser.run(`document.querySelector('#detail details').open = true;
    return document.querySelectorAll('#detail details').length`);
  await report(uuid);
  await browser.until('return document.querySelectorAll("#detail details").length === arguments[0]', count + 1);
  assert.equal(await browser.run("return document.querySelector('#detail details').open"), true);
});

test('a decoder reads the QR code on the slip', async () => {
  const {payload} = await report(await browser.run('return location.hash.slice(1)'));
  await browser.until("return document.querySelector('#qr').complete && document.querySelector('#qr').naturalWidth > 0");
  const folder = mkdtempSync(join(scratch, 'qr-'));
  writeFileSync(join(folder, 'qr.png'), await browser.picture('#qr'));
  const text = execFileSync('zbarimg', ['--raw', '--quiet', join(folder, 'qr.png')], {encoding: 'utf8'}).trim();
  const [, day, month, year, hour, minute] = payload.receipt_datetime.match(/(\d\d)\.(\d\d)\.(\d{4}) (\d\d):(\d\d)/);
  assert.equal(text, `t=${year}${month}${day}T${hour}${minute}&s=150.50&fn=${payload.fn_number}` +
    `&i=${payload.fiscal_document_number}&fp=${payload.fiscal_document_attribute}&n=1`);
});

test('a fault set on the page hits the next sell', async () => {
  await browser.run(`${chooseInForm}
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

test('a refused repeat is counted in the list', async () => {
  const real = token;
  token = 'none';
  assert.equal((await sell('till-2')).status, 401);
  token = real;
  await browser.until(`return ${rowOf('till-2')}?.innerText.includes('requests: 3')`);
});

test('the form starts with the defaults of the API, and the API accepts all that it offers', async () => {
  const all = await browser.runAsync(`const done = arguments[0];
    (async () => {
      const {ask} = await import('/api.js');
      const {faultFromForm} = await import('/faultform.js');
      ${chooseInForm}
      const seen = [];
      for (const endpoint of ['sell', 'report', 'token']) {
        choose('endpoint', endpoint);
        for (const option of [...document.getElementById('effect').options]) {
          choose('effect', option.value);
          const fromForm = faultFromForm();
          const short = {endpoint, effect: option.value, match: fromForm.match, ...(fromForm.key ? {key: fromForm.key} : {})};
          const [long, usual] = await Promise.all([fromForm, short].map(async one =>
            (await ask('faults', {method: 'POST', body: JSON.stringify(one)})).faults[0]));
          await ask('faults', {method: 'DELETE'});
          delete long.id; delete usual.id;
          seen.push([endpoint + ' ' + option.value, JSON.stringify(long), JSON.stringify(usual)]);
        }
      }
      return seen;
    })().then(done, error => done(String(error)))`);
  assert.equal(all.length, 17 + 17 + 15, JSON.stringify(all));
  for (const [what, long, usual] of all) assert.equal(long, usual, what);
});

test('an invalid fault is rejected with the reason', async () => {
  await browser.run(`${chooseInForm}
    choose('endpoint', 'sell');
    choose('effect', 'html');
    document.getElementById('parameter').value = '42';
    document.getElementById('fault').requestSubmit()`);
  await browser.until("return document.getElementById('fault-error').innerText.includes('fault.status')");
});

test('the result of an outdated search is not shown', async () => {
  const shown = await browser.runAsync(`const done = arguments[0];
    const real = window.fetch;
    let calls = 0;
    window.fetch = async (...given) => {
      const late = ++calls === 1;
      const answer = await real(...given);
      if (late) await new Promise(resolve => setTimeout(resolve, 300));
      return answer;
    };
    const query = document.getElementById('query');
    import('/list.js').then(({refresh}) => {
      query.value = 'till-1';
      const first = refresh();
      query.value = 'till-2';
      return Promise.all([first, refresh()]);
    }).finally(() => {
      window.fetch = real;
      done([...document.querySelectorAll('#list .id')].map(one => one.innerText));
    });`);
  assert.deepEqual(shown, ['till-2']);
  await browser.run(`document.getElementById('query').value = '';
    document.getElementById('query').dispatchEvent(new Event('input'))`);
  await browser.until(`return ${rowOf('till-1')}`);
});

test('the search narrows the list', async () => {
  await browser.run("document.getElementById('query').focus()");
  await browser.type('till-2');
  await browser.until("return document.querySelectorAll('#list li').length === 1");
  await browser.press(...Array(6).fill(keys.backspace));
  await browser.until(`return ${rowOf('till-1')} && ${rowOf('till-2')}`);
});

test('everything can be reached and operated by keyboard', async () => {
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
  await tabTo('Remove');
  await browser.press(keys.enter);
  await browser.until("return document.querySelectorAll('#fault-list li').length === 0");
});

test('the focus stays where it is while calls arrive', async () => {
  await exchange('POST', '/_emulator/faults', JSON.stringify({endpoint: 'sell', effect: 'delay', milliseconds: 1}));
  await browser.until("return document.querySelectorAll('#fault-list li').length === 1");
  await browser.run("document.getElementById('calls').open = true");
  await browser.until("return document.querySelector('#call-list summary')");
  for (const where of ['#call-list summary', '#fault-list button']) {
    await browser.run('document.querySelector(arguments[0]).focus()', where);
    const focused = await browser.run('return document.activeElement.outerHTML');
    const hits = await browser.run("return document.getElementById('fault-list').innerText");
    const latest = await browser.run("return document.querySelector('#call-list .exchange').dataset.sequence");
    assert.equal((await sell(`focus ${where}`)).status, 200);
    await browser.until("return document.getElementById('fault-list').innerText !== arguments[0]", hits);
    await browser.until("return document.querySelector('#call-list .exchange').dataset.sequence !== arguments[0]", latest);
    assert.equal(await browser.run('return document.activeElement.outerHTML'), focused);
  }
  await exchange('DELETE', '/_emulator/faults', '');
  await browser.run("document.getElementById('calls').open = false");
});

test('the fault form can be filled in and submitted by keyboard alone', async () => {
  const idOfFocused = 'return document.activeElement.id';
  const fill = async (id, ...pressed) => {
    for (let i = 0; i < 100 && await browser.run(idOfFocused) !== id; ++i) await browser.press(keys.tab);
    assert.equal(await browser.run(idOfFocused), id);
    await browser.press(...pressed);
  };
  const pick = async (id, value) => {
    await fill(id);
    for (let i = 0; i < 30 && await browser.run(`return document.getElementById('${id}').value`) !== value; ++i)
      await browser.press(keys.down);
    assert.equal(await browser.run(`return document.getElementById('${id}').value`), value);
  };
  await browser.goto(root);
  await browser.until("return document.querySelectorAll('#effect option').length > 0 && document.querySelector('#list li')");
  await pick('endpoint', 'report');
  await fill('next', '2');
  await pick('effect', 'fail');
  await pick('type', 'agent');
  await fill('code', ...'2009');
  await pick('phase', 'after');
  await fill('after', '1');
  await fill('every', '3');
  await fill('login', ...'shop');
  await fill('group', ...'group');
  await fill('pattern', ...'key-?', keys.enter);
  await browser.until("return document.querySelectorAll('#fault-list li').length === 1");
  const [fault] = JSON.parse((await exchange('GET', '/_emulator/faults', '')).body).faults;
  delete fault.id;
  assert.deepEqual(fault, {name: '', endpoint: 'report',
    match: {login: 'shop', group: 'group', external_id: 'key-?', next: 2, every: 3, after: 1}, phase: 'after',
    effect: 'fail', code: 2009, type: 'agent', matched: 0, hits: 0, spent: false});
  await exchange('DELETE', '/_emulator/faults', '');
});

test('there are no accessibility violations in either colour scheme or language', async () => {
  const source = readFileSync(axe, 'utf8');
  for (const language of ['en', 'ru']) {
    if (language === 'ru') {
      await openPage('ru');
      assert.equal(await browser.run("return document.getElementById('receipts-title').innerText"), 'Чеки');
    }
    await openReceipt('till-1');
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

test('faults and errors are shown in Russian to Russian users', async () => {
  const bad = [['sell', 'html', 'parameter', '42', 'целое число от 200 до 599'], ['sell', 'error', 'parameter', '-1', 'Код ошибки'],
    ['sell', 'drip', 'parameter', 'x', 'целое число от 0'], ['sell', 'wrong-length', 'parameter', '0', 'верную длину'],
    ['report', 'without-key', 'parameter', '', 'Укажите ключ'], ['sell', 'never', 'phase', 'before', 'никогда не будет готов'],
    ['sell', 'close', 'next', '10000000000', 'Запросов (0 — все)']];
  for (const [endpoint, effect, field, value, words] of bad) {
    await browser.run(`${chooseInForm}
      const [endpoint, effect, field, value] = arguments;
      choose('endpoint', endpoint);
      choose('effect', effect);
      document.getElementById('parameter').type = 'text';
      document.getElementById(field).value = value;
      document.getElementById('fault').requestSubmit()`, endpoint, effect, field, value);
    await browser.until("return document.getElementById('fault-error').innerText.includes(arguments[0])", words);
  }
  await browser.run("document.getElementById('next').value = 1");
  await exchange('DELETE', '/_emulator/faults', '');
  await exchange('POST', '/_emulator/faults', JSON.stringify({endpoint: 'sell', effect: 'html', match: {next: 1}}));
  await sell('russian');
  await sell('russian');
  await openReceipt('russian');
  await browser.until("return document.getElementById('detail').innerText.includes('страница HTML, до выполнения запроса')");
});

test('the page contains no secrets and logged no errors', async () => {
  await browser.run("document.getElementById('calls').open = true");
  await browser.until("return document.getElementById('call-list').textContent.includes('getToken')");
  const everything = await browser.run('return document.documentElement.outerHTML');
  assert.ok(!everything.includes(password));
  assert.ok(!everything.includes(token));
  const log = await browser.log();
  assert.deepEqual(log.filter(entry => entry.level === 'SEVERE' && !entry.message.includes('400')), []);
});

test('all receipts are deleted after confirmation', async () => {
  await browser.click('#clear');
  await browser.call('POST', '/alert/dismiss');
  assert.ok(await browser.run(`return ${rowOf('till-1')}`));
  await browser.click('#clear');
  await browser.call('POST', '/alert/accept');
  await browser.until("return document.querySelectorAll('#list li').length === 0");
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
  await openPage('en');
  const {uuid} = JSON.parse((await sell('busy')).body);
  for (let i = 0; i < 149; ++i) await report(uuid);
  await openReceipt('busy');
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

test('nothing was fetched from other sites', async () => {
  await leavePage();
  browser = undefined;
  assert.ok(requested.some(url => url.endsWith('/_emulator/effects')), requested.join(' '));
  const elsewhere = requested.filter(url => !/^(http:\/\/127\.0\.0\.1:\d+\/|data:)/.test(url));
  assert.deepEqual(elsewhere, []);
});
