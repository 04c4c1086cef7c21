// Uses the emulator's page in headless Chromium:
// FREMULATOR=program FRHOST=program AXE=axe.min.js node --test pagetest.mjs
import assert from 'node:assert/strict';
import {execFileSync, spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {test} from 'node:test';
import {axe, browser, chooseInForm, exchange, focused, host, openPage, openReceipt, password, report, root, rowOf,
  sell, service, startAll, tabTo, testThatNothingCameFromOtherSites, token, useToken, violations
  } from './pagesupport.mjs';
import {keys, scratch} from './webdriver.mjs';

startAll();

test('no script leaves a name in the global scope', async () => {
  const names = await browser.runAsync(`const done = arguments[0];
    const scripts = performance.getEntriesByType('resource').map(one => one.name).filter(name => name.endsWith('.js'));
    Promise.all(scripts.map(async name => (await fetch(name)).text())).then(texts => done(texts.flatMap(text =>
      [...text.matchAll(/^(?:export )?(?:async )?(?:function|const|let|class) (\\w+)/gm)].map(match => match[1]))))`);
  assert.ok(names.includes('ask') && names.includes('exchangeBox'), names.join(' '));
  const global = await browser.run('return {' + names.map(name => `${name}: typeof ${name}`).join(', ') + '}');
  const usual = await browser.run(`const frame = document.body.appendChild(document.createElement('iframe'));
    const usual = arguments[0].filter(name => name in frame.contentWindow || document.getElementById(name));
    frame.remove();
    return usual`, names);
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
  const sold = spawn(host, ['--config', join(folder, 'register.ini'), 'sell', join(folder, 'receipt.json'),
    '--journal', join(folder, 'journal.db')],
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
  await browser.run("document.getElementById('fault').requestSubmit()");
  await browser.until("return document.querySelectorAll('#fault-list li').length === 1");
  const hit = await sell('till-2');
  assert.equal(hit.status, 503);
  assert.match(hit.head, /Content-Type: text\/html/);
  await browser.until("return document.querySelector('#fault-list').innerText.includes('hits: 1/1')");
  assert.equal((await sell('till-2')).status, 200);
  await browser.until(`return ${rowOf('till-2')}?.innerText.includes('requests: 2')`);
  const colour = css => browser.run('return getComputedStyle(document.querySelector(arguments[0])).color', css);
  assert.equal(await colour('#list .tries-count'), await colour('#list small'), 'several requests are nothing bad');
});

test('a refused repeat is counted in the list', async () => {
  const real = token;
  useToken('none');
  assert.equal((await sell('till-2')).status, 401);
  useToken(real);
  await browser.until(`return ${rowOf('till-2')}?.innerText.includes('requests: 3')`);
});

test('a person who opens the page after a refused sale sees at once which field is wrong', async () => {
  const items = [{name: 'Хлеб', price: 33.333, quantity: 1, sum: 150.5, vat: {type: 'vat10'}}];
  const company = {email: 'shop@example.com', payment_address: 'shop.example'};
  assert.equal((await sell('wrong', {items, company})).status, 400);
  await browser.goto(root);
  await browser.until("return document.querySelectorAll('.wrong').length === 2");
  assert.equal(await browser.run("return document.getElementById('opened-title').innerText"), 'Receipt wrong');
  const verdict = await browser.run("return document.querySelector('.verdict').innerText");
  assert.match(verdict, /2 fields are wrong[^]*receipt\.company\.inn[^]*missing[^]*10 or 12 digits[^]*receipt\.items\[0\]\.price[^]*33\.333[^]*two decimals/);
  assert.doesNotMatch(verdict, /[а-я]/i);
  const isInView = `const box = document.querySelector(arguments[0]).getBoundingClientRect();
    return box.top >= 0 && box.bottom <= innerHeight`;
  assert.equal(await browser.run(isInView, '.verdict'), true);
  const lines = await browser.run("return [...document.querySelectorAll('.wrong')].map(one => one.textContent)");
  assert.match(lines[0], /^"inn": missing\n.*10 or 12 digits/);
  assert.match(lines[1], /^"price": 33\.333,\n.*two decimals/);
  const row = await browser.run(`return ${rowOf('wrong')}.innerText`);
  assert.match(row, /refused 32[^]*receipt\.company\.inn/);

  await browser.size(1400, 500);
  await browser.run("document.getElementById('opened').scrollTop = 0");
  await browser.run("document.querySelectorAll('.verdict .field')[1].click()");
  await browser.until(isInView, '#wrong-1');
  assert.equal(await browser.run('return document.activeElement.id'), 'wrong-1');
  await browser.size(1400, 1200);
});

test('far from the wrong field, the body of a refused receipt is folded', async () => {
  const item = {name: 'Milk', price: 1, quantity: 1, sum: 1, vat: {type: 'vat10'}};
  const items = [...Array(49).fill(item), {...item, quantity: 0}];
  await sell('long', {items, payments: [{type: 1, sum: 50}], total: 50});
  await openReceipt('long');
  await browser.until("return document.getElementById('opened-title').innerText.includes('long')");
  assert.equal(await browser.run("return document.querySelectorAll('.wrong').length"), 1);
  const count = await browser.run("return document.querySelectorAll('.refused-receipt .line').length");
  assert.ok(count < 25, `${count} lines`);
  const number = await browser.run("return document.querySelector('.wrong').dataset.number");
  while (await browser.run("return document.querySelector('.folded') !== null")) await browser.run("document.querySelector('.folded').click()");
  const numbers = await browser.run("return [...document.querySelectorAll('.refused-receipt .line')].map(one => Number(one.dataset.number))");
  assert.deepEqual(numbers, numbers.map((_, index) => index + 1));
  assert.equal(await browser.run("return document.querySelector('.wrong').dataset.number"), number);
});

test('a call that was refused for another reason says why, and one that is not JSON is shown as it was sent', async () => {
  const real = token;
  useToken('none');
  await sell('no-token');
  useToken(real);
  await openReceipt('no-token');
  await browser.until("return document.querySelector('.verdict')?.innerText.includes('code 10')");
  assert.match(await browser.run("return document.querySelector('.verdict').innerText"), /header Token/);
  await exchange('POST', service + 'group/sell', '{not JSON <b>', {Token: token});
  await openReceipt('(no id)');
  await browser.until("return document.querySelector('.verdict')?.innerText.includes('not a JSON object')");
  assert.match(await browser.run("return document.querySelector('.refused-receipt .code').innerText"), /^\{not JSON <b>/);
});

test('the part of the head that is wrong is marked', async () => {
  const body = id => JSON.stringify({timestamp: '01.03.2026 10:00:00', external_id: id, receipt: {}});
  const send = (id, path, headers) => exchange('POST', service + path, body(id), headers);
  await exchange('POST', '/_emulator/faults', JSON.stringify({endpoint: 'token', effect: 'old-token', match: {next: 1}}));
  const late = JSON.parse((await exchange('POST', service + 'getToken', JSON.stringify({login: 'shop', pass: password}))).body).token;
  await exchange('DELETE', '/_emulator/faults', '');
  const rows = [
    ['head-none', 'group/sell', {}, 10, 'Token', 'missing', /^Token: missing/],
    ['head-query', 'group/sell?token=none', {}, 10, 'Token', '***', /^POST .*\?token=\*\*\* HTTP/],
    ['head-late', 'group/sell', {Token: late}, 11, 'Token', '***', /^Token: \*\*\*/],
    ['head-group', 'stranger/sell', {Token: token}, 20, 'group in the address', 'stranger', /^POST .*v4\/stranger\/sell HTTP/],
    ['head-operation', 'group/rent', {Token: token}, 31, 'operation in the address', 'rent', /^POST .*v4\/group\/rent HTTP/],
    ['head-type', 'group/sell', {Token: token, 'Content-Type': 'text/plain'}, 41, 'Content-Type', 'text/plain', /^Content-Type: text\/plain/]
  ];
  for (const [id, path, headers, code, field, value, line] of rows) {
    await send(id, path, headers);
    await openReceipt(id);
    await browser.until("return document.getElementById('opened-title').innerText.endsWith(arguments[0]) && document.querySelector('.verdict')", id);
    assert.ok((await browser.run("return document.querySelector('.verdict h3').innerText")).endsWith(`code ${code}`), id);
    assert.deepEqual(await browser.run("return [...document.querySelectorAll('.verdict .field, .verdict .sent')].map(one => one.innerText)"),
      [field, value], id);
    const marked = await browser.run("return [...document.querySelectorAll('#detail .wrong')].map(one => one.textContent)");
    assert.equal(marked.length, 1, id);
    assert.match(marked[0], line);
    assert.match(await browser.run(`return ${rowOf(id)}.innerText`), new RegExp(`refused ${code}[^]*${field}`));
  }
  await browser.run("document.querySelector('.verdict .field').click()");
  assert.match(await browser.run('return document.activeElement.textContent'), /^Content-Type/);
  await exchange('POST', '/_emulator/faults', JSON.stringify({endpoint: 'sell', effect: 'error', code: 41, match: {next: 1}}));
  await sell('head-fault');
  await openReceipt('head-fault');
  await browser.until("return document.querySelector('.verdict')?.innerText.includes('because of a fault')");
  assert.equal(await browser.run("return document.querySelectorAll('#detail .wrong').length"), 0, 'the head is not to blame');
  await exchange('DELETE', '/_emulator/faults', '');
});

test('the field because of which a receipt failed later is marked', async () => {
  const line = (name, vat) => ({name, price: 75.25, quantity: 1, sum: 75.25, vat});
  const items = [line('A', {type: 'vat10', sum: 6.84}), line('B', {type: 'vat10', sum: 20})];
  assert.equal((await sell('late-sum', {items})).status, 200);
  await openReceipt('late-sum');
  await browser.until("return document.querySelector('.receipt-title .field')?.innerText === 'receipt.items[1].vat.sum'");
  const marked = await browser.run("return [...document.querySelectorAll('#detail .wrong')].map(one => one.textContent)");
  assert.equal(marked.length, 1);
  assert.match(await browser.run(`return ${rowOf('late-sum')}.innerText`), /failed[^]*receipt\.items\[1\]\.vat\.sum/);
  assert.match(marked[0], /"sum": 20[^]*must be the VAT at this rate: 6\.84/);
  await exchange('POST', '/_emulator/faults', JSON.stringify({endpoint: 'sell', effect: 'fail', match: {next: 1}}));
  assert.equal((await sell('late-fault', {items})).status, 200);
  await openReceipt('late-fault');
  await browser.until("return document.getElementById('opened-title').innerText.includes('late-fault') && document.querySelector('.verdict')");
  assert.equal(await browser.run("return document.querySelectorAll('#detail .wrong, #detail .field').length"), 0, 'no field is to blame');
  await exchange('DELETE', '/_emulator/faults', '');
});

test('a refused receipt that is registered in the end becomes the registered one', async () => {
  await sell('second-try', {total: 1});
  await openReceipt('second-try');
  await browser.until("return document.querySelector('.wrong')");
  await sell('second-try', {total: 2});
  await browser.until("return document.querySelector('.wrong')?.innerText.includes('2')");
  assert.equal((await sell('second-try')).status, 200);
  await browser.until("return document.querySelector('#qr')");
  assert.match(await browser.run(`return ${rowOf('second-try')}.innerText`), /done[^]*requests: 3/);
  assert.match(await browser.run('return location.hash'), /^#[0-9a-f-]{36}$/);
});

test('two tries of a receipt are compared side by side', async () => {
  await browser.run("document.querySelector('.tries').open = true");
  await browser.until("return document.querySelectorAll('.try').length === 2");
  const tops = await browser.run("return [...document.querySelectorAll('.try')].map(one => one.getBoundingClientRect().top)");
  assert.equal(tops[0], tops[1]);
  const differing = `return [...document.querySelectorAll('.try')].map(one =>
    [...one.querySelectorAll('.message:first-of-type .differs')].map(line => line.textContent.trim()))`;
  assert.deepEqual(await browser.run(differing), [['"total": 2'], ['"total": 150.5']]);
  await browser.run(`const select = document.querySelector('.try select');
    select.value = 0;
    select.dispatchEvent(new Event('change'))`);
  assert.deepEqual(await browser.run(differing), [['"total": 1'], ['"total": 150.5']]);
});

test('JSON on the wire is indented, coloured and numbered, keeps its numbers, and can be copied', async () => {
  const body = '{"a":{"list":[1.50,12345678901234567890,1e14],"empty":[{},[]]},"\\u043a":"\\u0442\\"{","n":null}';
  await exchange('POST', service + 'group/sell', body, {Token: token});
  await openReceipt('timestamp');
  await browser.until("return document.querySelector('#detail .exchange')?.textContent.includes('12345678901234567890')");
  const lines = await browser.run(`document.querySelector('#detail .exchange').open = true;
    return [...document.querySelectorAll('#detail .exchange .message:first-of-type .line')].map(one =>
      one.dataset.number + ' ' + '  '.repeat(one.style.getPropertyValue('--depth')) + one.textContent.trimEnd())`);
  assert.deepEqual(lines, ['1 {', '2   "a": {', '3     "list": [', '4       1.50,', '5       12345678901234567890,', '6       1e14',
    '7     ],', '8     "empty": [', '9       {},', '10       []', '11     ]', '12   },', '13   "к": "т\\"{",', '14   "n": null', '15 }']);
  const colours = await browser.run(`const box = document.querySelector('#detail .exchange .code');
    return ['key', 'text', 'number', 'sign'].map(kind => getComputedStyle(box.querySelector('.' + kind)).color)`);
  assert.equal(new Set(colours).size, 4);
  const scrolls = await browser.run(`return [...document.querySelectorAll('#detail pre')].filter(one => one.scrollHeight > one.clientHeight + 1
    || one.scrollWidth > one.clientWidth + 1).length`);
  assert.equal(scrolls, 0, 'no scroll box in a scroll box');
  await browser.size(1400, 600);
  assert.equal(await browser.run("return document.getElementById('receipts').scrollHeight > 700"), true);
  assert.equal(await browser.run('return document.documentElement.scrollHeight'), 600, 'the panes scroll, not the page around them');
  await browser.size(1400, 1200);
  await browser.run("navigator.clipboard.writeText = text => { window.copied = text; return Promise.resolve(); }");
  await browser.click('#detail .exchange .copy');
  assert.equal(await browser.until('return window.copied'), body);
});

test('the list is filtered by status, kind and group, counts, and is exported as shown', async () => {
  const rows = 'return document.querySelectorAll("#list li").length';
  await browser.goto(root);
  const all = await browser.until(rows);
  const count = of => browser.run(`return Number(document.querySelector('#statuses [data-status="${of}"] b').innerText)`);
  const sum = await count('done') + await count('wait') + await count('fail') + await count('refused');
  assert.equal(await count(''), sum);
  assert.equal(all, sum);
  await browser.click('#statuses [data-status=refused]');
  await browser.until(`${rows} === ${await count('refused')}`);
  assert.equal(await browser.run("return [...document.querySelectorAll('#list .pills')].every(one => one.innerText.startsWith('refused'))"), true);
  assert.equal(await browser.run("return document.querySelector('#statuses [data-status=refused]').ariaPressed"), 'true');

  const csv = await browser.runAsync(`const done = arguments[0];
    const real = URL.createObjectURL;
    URL.createObjectURL = blob => { URL.createObjectURL = real; blob.text().then(done); return real.call(URL, blob); };
    document.getElementById('export').click()`);
  const exported = csv.trim().split('\r\n');
  assert.equal(exported.length, 1 + await count('refused'));
  assert.match(exported[0], /"external_id"/);
  assert.match(csv, /"wrong"[^\n]*"150\.5","refused","32","receipt\.company\.inn","1"/);

  await browser.click('#statuses [data-status=refused]');
  await browser.until(`${rows} === ${all}`);
  await browser.run("document.getElementById('of-kind').value = 'buy'; document.getElementById('of-kind').dispatchEvent(new Event('change'))");
  await browser.until("return document.getElementById('none').checkVisibility()");
  await browser.run("document.getElementById('of-kind').value = ''; document.getElementById('of-kind').dispatchEvent(new Event('change'))");
  await browser.until(`${rows} === ${all}`);
});

test('a text that begins like a formula is no formula in the export', async () => {
  const [csv] = await browser.runAsync(`const done = arguments[0];
    import('/list/csv.js').then(({csvOf}) => done([csvOf([{external_id: '=1+"1"', received_at: '2026-03-01T00:00:00Z', wire_requests: 1}])]))`);
  assert.ok(csv.includes(`"'=1+""1"""`), csv);
});

test('list and slip show the same time, in Moscow and with its zone', async () => {
  await openReceipt('till-1');
  await browser.until("return document.getElementById('opened-title').innerText.includes('till-1') && document.querySelector('#qr')");
  const pattern = /\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d MSK/;
  const [inList] = (await browser.run(`return ${rowOf('till-1')}.innerText`)).match(pattern);
  const [onSlip] = (await browser.run("return document.querySelector('.slip').innerText")).match(pattern);
  assert.equal(inList.slice(0, 16), onSlip.slice(0, 16));
});

test('a preset says that it is on, and a second click switches it off', async () => {
  const pressed = 'return document.querySelector("#presets button").ariaPressed';
  const faults = 'return document.querySelectorAll("#fault-list li").length';
  const before = await browser.run(faults);
  assert.equal(await browser.run(pressed), 'false');
  assert.equal(await browser.run('return document.querySelector("#presets .on").checkVisibility({visibilityProperty: true})'), false);
  await browser.click('#presets button');
  await browser.until(pressed + ' === "true"');
  assert.equal(await browser.run('return document.querySelector("#presets .on").checkVisibility({visibilityProperty: true})'), true);
  await browser.click('#presets button');
  await browser.until(pressed + ' === "false"');
  await browser.until(`${faults} === ${before}`);
  assert.equal(await browser.run("return document.getElementById('fault').checkVisibility()"), false, 'the form is folded');
});

test('on a phone, one pane is shown at a time, with a way back', async () => {
  await browser.size(390, 844);
  const visible = () => browser.run("return ['receipts', 'opened', 'faults'].filter(id => document.getElementById(id).checkVisibility())");
  await browser.run("location.hash = ''");
  await browser.until("return document.body.dataset.pane === 'receipts'");
  assert.deepEqual(await visible(), ['receipts']);
  await openReceipt('wrong');
  await browser.until("return document.body.dataset.pane === 'opened'");
  assert.deepEqual(await visible(), ['opened']);
  await browser.click('#back');
  await browser.until("return document.body.dataset.pane === 'receipts'");
  assert.equal(await browser.run('return document.activeElement.innerText.includes("wrong")'), true);
  await browser.call('POST', '/back');
  await browser.until("return document.body.dataset.pane === 'opened'");
  await browser.call('POST', '/forward');
  await browser.until("return document.body.dataset.pane === 'receipts'");
  await browser.click('#panes [data-pane=faults]');
  assert.deepEqual(await visible(), ['faults']);
  assert.equal(await browser.run('return document.documentElement.scrollWidth > innerWidth'), false, 'nothing is wider than the screen');
  await browser.click('#panes [data-pane=receipts]');
  await browser.size(1400, 1200);
});

test('the theme switch overrides the system and is remembered', async () => {
  const paper = () => browser.run("return getComputedStyle(document.querySelector('section')).backgroundColor");
  await browser.colours('light');
  const light = await paper();
  await browser.click('#theme');
  assert.equal(await paper(), light);
  await browser.click('#theme');
  const dark = await paper();
  assert.notEqual(dark, light);
  await browser.goto(root);
  await browser.until("return document.getElementById('theme').innerText.includes('Dark')");
  assert.equal(await paper(), dark);
  await openReceipt('till-1');
  await browser.until("return document.querySelector('.slip')");
  const [red, green, blue] = (await browser.run("return getComputedStyle(document.querySelector('.slip')).backgroundColor")).match(/\d+/g);
  assert.ok(Number(red) + Number(green) + Number(blue) < 200, 'the slip does not glare');
  await browser.click('#theme');
  assert.equal(await paper(), light);
});

test('the form starts with the defaults of the API, and the API accepts all that it offers', async () => {
  const all = await browser.runAsync(`const done = arguments[0];
    (async () => {
      const {ask} = await import('/base/api.js');
      const {faultFromForm} = await import('/faults/faultform.js');
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
    import('/list/list.js').then(({refresh}) => {
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
  const set = await browser.run("return document.querySelectorAll('#fault-list li').length");
  await browser.press(keys.enter);
  await browser.until("return document.querySelectorAll('#fault-list li').length === arguments[0]", set - 1);
  await exchange('DELETE', '/_emulator/faults', '');
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
  await browser.run("document.getElementById('own-fault').open = true");
  await pick('endpoint', 'report');
  await pick('effect', 'fail');
  await pick('type', 'agent');
  await fill('code', ...'2009');
  await pick('phase', 'after');
  await fill('next', '2');
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

const wide = [1400, 1200], phone = [390, 844];

test('there are no accessibility violations in any language, colour scheme, width or pane', async () => {
  const source = readFileSync(axe, 'utf8');
  await sell('refused', {total: 33.333});
  for (const language of ['en', 'ru']) {
    if (language === 'ru') {
      await openPage('ru');
      assert.equal(await browser.run("return document.getElementById('receipts-title').innerText"), 'Чеки');
    }
    await browser.run(source);
    await openReceipt('till-2');
    await browser.until("return document.querySelector('#qr')");
    await browser.click('#presets button:not([aria-pressed=true])');
    await browser.until("return document.querySelectorAll('#fault-list li').length > 0");
    const check = async what => {
      // The latest calls all look alike, and there are many.
      await browser.run(`for (const box of document.querySelectorAll('details')) box.open = true;
        for (const box of [...document.querySelectorAll('#call-list details')].slice(3)) box.open = false`);
      for (const scheme of ['light', 'dark']) {
        await browser.colours(scheme);
        assert.deepEqual(await violations(), [], `${language}, ${scheme}, ${what}`);
      }
    };
    await check('registered');
    await openReceipt('refused');
    await browser.until("return document.querySelector('.verdict')");
    await check('refused');
    await browser.size(...phone);
    await check('refused, phone');
    await browser.click('#back');
    await check('list, phone');
    await browser.click('#panes [data-pane=faults]');
    await check('faults, phone');
    await browser.click('#panes [data-pane=receipts]');
    await browser.size(...wide);
  }
});

test('faults and errors are shown in Russian to Russian users', async () => {
  const bad = [['sell', 'html', 'parameter', '42', 'целое число от 200 до 599'], ['sell', 'error', 'parameter', '-1', 'Код ошибки'],
    ['sell', 'drip', 'parameter', 'x', 'целое число от 0'], ['sell', 'wrong-length', 'parameter', '0', 'верную длину'],
    ['report', 'without-key', 'parameter', '', 'Укажите ключ'], ['sell', 'never', 'phase', 'before', 'никогда не будет готов'],
    ['sell', 'close', 'next', '10000000000', 'Сколько раз (0 — всегда)']];
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
  await browser.until("return document.getElementById('detail').innerText.includes('страница HTML; чек не регистрируется')");
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
  // The safe choice has the focus.
  await browser.press(keys.enter);
  await browser.until("return !document.getElementById('clearing').open");
  await browser.click('#clear');
  assert.deepEqual(await violations(), []);
  await browser.press(keys.escape);
  await browser.until("return !document.getElementById('clearing').open");
  assert.ok(await browser.run(`return ${rowOf('till-1')}`));
  await browser.click('#clear');
  await browser.click('#clearing button[value=delete]');
  await browser.until("return document.querySelectorAll('#list li').length === 0");
  assert.equal(await browser.run("return document.getElementById('beginning').checkVisibility()"), true);
});

testThatNothingCameFromOtherSites();
