'use strict';

const api = '/_emulator/';
const byId = id => document.getElementById(id);
const mostRows = 200;
let openUuid = '';
let effects = [];

function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children.filter(child => child !== null && child !== undefined));
  return element;
}

async function ask(path, options) {
  const response = await fetch(api + path, options);
  const body = await response.json();
  if (!response.ok) throw new Error(body.error || response.statusText);
  return body;
}

const money = value => Number(value).toFixed(2);

// The list of receipts.

function fillRow(button, receipt) {
  const twice = receipt.wire_requests > 1
    ? make('small', {className: 'twice', textContent: `${say.requests}: ${receipt.wire_requests}`}) : null;
  button.replaceChildren(
    make('span', {className: 'id', textContent: receipt.external_id}),
    make('span', {textContent: money(receipt.total)}),
    make('small', {textContent: new Date(receipt.received_at).toLocaleTimeString(language)}),
    make('small', {className: receipt.status, textContent: say['status_' + receipt.status]}),
    ...(twice ? [twice] : []));
}

function row(receipt) {
  const button = make('button', {type: 'button'});
  button.dataset.uuid = receipt.uuid;
  button.addEventListener('click', () => { location.hash = receipt.uuid; });
  fillRow(button, receipt);
  return make('li', {}, button);
}

function showReceipt(receipt) {
  const known = byId('list').querySelector(`button[data-uuid="${receipt.uuid}"]`);
  if (known) {
    fillRow(known, receipt);
    return;
  }
  if (byId('query').value) {
    refreshSoon();
    return;
  }
  byId('list').prepend(row(receipt));
  while (byId('list').children.length > mostRows) byId('list').lastElementChild.remove();
  byId('none').hidden = true;
  byId('news').textContent = `${say.arrived} ${receipt.external_id}, ${money(receipt.total)}`;
}

function markOpen() {
  for (const button of byId('list').querySelectorAll('button'))
    button.setAttribute('aria-current', String(button.dataset.uuid === openUuid));
}

async function refresh() {
  const text = byId('query').value;
  const found = await ask(`documents?limit=${mostRows}&text=${encodeURIComponent(text)}`);
  const focused = document.activeElement.dataset.uuid;
  byId('list').replaceChildren(...found.documents.map(row));
  byId('none').hidden = found.documents.length > 0;
  if (focused) byId('list').querySelector(`button[data-uuid="${focused}"]`)?.focus();
  markOpen();
}

// A receipt becomes done by the passing of time alone, which brings no event.
async function lookAfterWaiting() {
  const waiting = [...byId('list').querySelectorAll('button:has(.wait)')];
  if (waiting.length > 0) {
    const found = await ask(`documents?limit=${mostRows}`);
    for (const receipt of found.documents.filter(one => one.status !== 'wait')) {
      const button = waiting.find(one => one.dataset.uuid === receipt.uuid);
      if (!button) continue;
      fillRow(button, receipt);
      if (receipt.uuid === openUuid) openFromAddress();
    }
  }
  setTimeout(lookAfterWaiting, 1000);
}

let refreshTimer = 0;
function refreshSoon() {
  clearTimeout(refreshTimer);
  refreshTimer = setTimeout(refresh, 200);
}

byId('list').addEventListener('keydown', event => {
  const step = {ArrowDown: 'nextElementSibling', ArrowUp: 'previousElementSibling'}[event.key];
  const other = step && event.target.closest('li')?.[step];
  if (!other) return;
  event.preventDefault();
  other.firstElementChild.focus();
});

// One receipt as a slip.

const vatRates = {vat10: 10, vat110: 10, vat20: 20, vat120: 20, vat0: 0, vat5: 5, vat105: 5, vat7: 7, vat107: 7,
  vat22: 22, vat122: 22};

function vatName(type) {
  return type in vatRates ? `${say.vat} ${vatRates[type]}%` : `${say.vat} ${type}`;
}

function vatSums(items) {
  const sums = {};
  for (const item of items) {
    const rate = vatRates[item.vat?.type];
    if (rate) sums[item.vat.type] = (sums[item.vat.type] || 0) + item.sum * rate / (100 + rate);
  }
  return Object.entries(sums);
}

function facts(pairs) {
  const list = make('dl');
  for (const [name, value] of pairs) {
    if (value !== undefined && value !== null && value !== '')
      list.append(make('dt', {textContent: name}), make('dd', {textContent: value}));
  }
  return list;
}

function line(item) {
  const supplier = item.supplier_info ? `${say.supplier}: ${item.supplier_info.name || ''} ${item.supplier_info.inn || ''}` : '';
  return make('div', {className: 'line'},
    make('span', {className: 'name', textContent: item.name}),
    make('span', {textContent: `${item.quantity} × ${money(item.price)}`}),
    make('span', {textContent: '= ' + money(item.sum)}),
    make('span', {className: 'name', textContent: item.vat ? vatName(item.vat.type) : ''}),
    supplier ? make('span', {className: 'name', textContent: supplier}) : null,
    item.nomenclature_code
      ? make('span', {className: 'name', textContent: `${say.marking}: ${item.nomenclature_code}`}) : null);
}

function outcome(receipt) {
  const payload = receipt.report.payload;
  if (!payload) {
    const failed = receipt.status === 'fail';
    const text = failed ? `${say.failed}: ${receipt.report.error.type} ${receipt.report.error.code}` : say.waiting;
    return [make('p', {className: receipt.status, textContent: text})];
  }
  return [
    facts([[say.time, payload.receipt_datetime], [say.shift, payload.shift_number],
      [say.receiptNumber, payload.fiscal_receipt_number], [say.register, payload.ecr_registration_number],
      [say.storage, payload.fn_number], [say.document, payload.fiscal_document_number],
      [say.sign, payload.fiscal_document_attribute], ['www', payload.fns_site]]),
    make('img', {id: 'qr', src: `${api}documents/${receipt.uuid}/qr.svg`, alt: `${say.qr}: ${receipt.qr}`})];
}

function slip(receipt) {
  const body = receipt.request.receipt || receipt.request.correction;
  const items = body.items || [];
  const client = body.client || {};
  const operation = receipt.operation === 'sell' ? 'sell_op' : receipt.operation;
  return make('div', {className: 'slip'},
    make('p', {textContent: body.company.payment_address}),
    make('p', {textContent: `${say.inn} ${body.company.inn} ${body.company.sno || ''}`}),
    make('p', {textContent: say[operation] || receipt.operation}),
    make('hr'), ...items.map(line), make('hr'),
    make('div', {className: 'line total'}, make('span', {textContent: say.total}),
      make('span', {textContent: '= ' + money(receipt.total)})),
    facts([...body.payments.map(payment => [say.payments[payment.type], money(payment.sum)]),
      ...vatSums(items).map(([type, sum]) => [vatName(type), money(sum)]),
      [say.buyer, client.email || client.phone]]),
    make('hr'), ...outcome(receipt));
}

function exchange(one) {
  const title = `${say[one.endpoint]}: ${one.status ? 'HTTP ' + one.status : say.noAnswer}` + (one.code === undefined ? '' : `, ${one.code}`) +
    (one.fault ? `, ${say.fault}: ${one.fault}` : '');
  const text = (name, content) => [make('h4', {textContent: name}),
    make('pre', {tabIndex: 0, role: 'group', ariaLabel: name, textContent: content})];
  const box = make('details', {}, make('summary', {textContent: title}));
  box.append(...text(say.request, one.request), ...text(say.answer, one.answer || say.noAnswer));
  return box;
}

function showDetail(receipt, exchanges) {
  byId('choose').hidden = true;
  byId('opened-title').textContent = `${say.opened} ${receipt.external_id}`;
  const detail = byId('detail');
  const title = make('h3', {textContent: `${say.raw}, ${say.requests}: ${receipt.wire_requests}`,
    className: receipt.wire_requests > 1 ? 'twice' : ''});
  if (detail.dataset.uuid !== receipt.uuid) {
    detail.replaceChildren(slip(receipt), title);
  } else {
    // What someone reads or has opened stays as it is.
    if (detail.dataset.status !== receipt.status) detail.querySelector('.slip').replaceWith(slip(receipt));
    detail.querySelector('h3').replaceWith(title);
  }
  Object.assign(detail.dataset, {uuid: receipt.uuid, status: receipt.status});
  const shown = detail.querySelectorAll('details').length;
  detail.append(...exchanges.slice(shown).map(exchange));
}

async function open(uuid) {
  openUuid = uuid;
  markOpen();
  if (!uuid) return;
  const [receipt, wire] = await Promise.all([ask('documents/' + uuid), ask(`documents/${uuid}/exchange`)]);
  if (uuid === openUuid) showDetail(receipt, wire.exchanges);
}

function openFromAddress() {
  open(location.hash.slice(1)).catch(error => {
    delete byId('detail').dataset.uuid;
    byId('detail').textContent = error.message;
  });
}

// Calls of every kind.

async function showCalls() {
  if (!byId('calls').open) return;
  const found = await ask('exchanges?limit=30');
  byId('call-list').replaceChildren(...found.exchanges.map(exchange));
}

// Faults.

function choose(select, pairs) {
  select.replaceChildren(...pairs.map(([value, textContent]) => make('option', {value, textContent})));
}

const chosenEffect = () => effects.find(one => one.effect === byId('effect').value);

function showEffects() {
  const endpoint = byId('endpoint').value;
  choose(byId('effect'), effects.filter(one => one.endpoints.includes(endpoint))
    .map(one => [one.effect, say.effects[one.effect] || one.effect]));
  showParameter();
}

function showParameter() {
  const effect = chosenEffect();
  byId('parameter-row').hidden = !effect.parameter;
  byId('parameter-label').textContent = say.parameters[effect.parameter] || '';
  byId('parameter').value = {code: 50, status: 502, bytes: 16, milliseconds: 5000, key: 'payload.fn_number',
    type: 'driver'}[effect.parameter] ?? '';
  byId('phase').value = effect.phase;
}

function faultOfForm() {
  const effect = chosenEffect();
  const fault = {endpoint: byId('endpoint').value, effect: effect.effect, phase: byId('phase').value, match: {}};
  const value = byId('parameter').value;
  if (effect.parameter)
    fault[effect.parameter] = ['key', 'type'].includes(effect.parameter) ? value : Number(value);
  if (byId('pattern').value) fault.match.external_id = byId('pattern').value;
  if (Number(byId('next').value) > 0) fault.match.next = Number(byId('next').value);
  if (Number(byId('after').value) > 0) fault.match.after = Number(byId('after').value);
  if (Number(byId('every').value) > 1) fault.match.every = Number(byId('every').value);
  return fault;
}

async function setFault(fault) {
  byId('fault-error').textContent = '';
  try {
    await ask('faults', {method: 'POST', body: JSON.stringify(fault)});
    await showFaults();
  } catch (error) {
    byId('fault-error').textContent = error.message;
  }
}

function faultRow(fault) {
  const what = fault.name || `${say[fault.endpoint]}: ${say.effects[fault.effect]}`;
  const where = fault.match.external_id ? ` (${fault.match.external_id})` : '';
  const text = `${what}${where}, ${say.hits}: ${fault.hits}` + (fault.match.next ? `/${fault.match.next}` : '');
  const remove = make('button', {type: 'button', textContent: say.remove, ariaLabel: `${say.remove}: ${what}`});
  remove.addEventListener('click', async () => {
    await ask('faults/' + fault.id, {method: 'DELETE'});
    await showFaults();
    byId('endpoint').focus();
  });
  return make('li', {}, make('span', {className: fault.spent ? 'spent' : '', textContent: text}), remove);
}

async function showFaults() {
  const {faults} = await ask('faults');
  byId('no-faults').hidden = faults.length > 0;
  byId('fault-list').replaceChildren(...faults.map(faultRow));
}

const presets = {
  preset_lost: {endpoint: 'sell', effect: 'close', phase: 'after', match: {next: 1}},
  preset_down: {endpoint: 'sell', effect: 'html', status: 502, phase: 'before', match: {next: 1}},
  preset_silent: {endpoint: 'sell', effect: 'silent', phase: 'before', match: {next: 1}},
  preset_driver: {endpoint: 'sell', effect: 'fail', type: 'driver', match: {next: 1}},
  preset_token: {endpoint: 'token', effect: 'old-token', milliseconds: 0, match: {next: 1}}
};

function showPresets() {
  byId('presets').replaceChildren(...Object.entries(presets).map(([name, fault]) => {
    const button = make('button', {type: 'button', textContent: say[name]});
    button.addEventListener('click', () => setFault({name: say[name], ...fault}));
    return button;
  }));
}

// What happens meanwhile.

let pending = [];
let flushTimer = 0;

function flush() {
  flushTimer = 0;
  const events = pending;
  pending = [];
  const receipts = new Map(events.filter(one => one.document).map(one => [one.document.uuid, one.document]));
  for (const receipt of [...receipts.values()].slice(-mostRows)) showReceipt(receipt);
  if (receipts.has(openUuid)) openFromAddress();
  if (events.some(one => one.kind === 'cleared' || one.kind === 'lost')) refreshSoon();
  if (events.some(one => one.kind === 'faults' || one.kind === 'lost' || one.fault)) showFaults();
  showCalls();
}

function follow() {
  const events = new EventSource(api + 'events');
  events.onopen = () => {
    byId('live').textContent = say.live;
    refresh();
    showFaults();
  };
  events.onerror = () => { byId('live').textContent = say.offline; };
  events.onmessage = event => {
    pending.push(JSON.parse(event.data));
    if (!flushTimer) flushTimer = setTimeout(flush, 100);
  };
}

async function start() {
  document.documentElement.lang = language;
  for (const element of document.querySelectorAll('[data-text]')) element.textContent = say[element.dataset.text];
  byId('address').textContent = location.origin + '/possystem/v4/';
  choose(byId('endpoint'), ['sell', 'report', 'token'].map(name => [name, say[name]]));
  choose(byId('phase'), [['before', say.before], ['after', say.afterPhase]]);
  showPresets();
  effects = (await ask('effects')).effects;
  showEffects();
  byId('endpoint').addEventListener('change', showEffects);
  byId('effect').addEventListener('change', showParameter);
  byId('fault').addEventListener('submit', event => { event.preventDefault(); setFault(faultOfForm()); });
  byId('search').addEventListener('submit', event => { event.preventDefault(); refresh(); });
  byId('query').addEventListener('input', refreshSoon);
  byId('clear').addEventListener('click', () => {
    if (confirm(say.clear + '?')) ask('documents', {method: 'DELETE'});
  });
  byId('calls').addEventListener('toggle', showCalls);
  addEventListener('hashchange', openFromAddress);
  openFromAddress();
  follow();
  lookAfterWaiting();
}

start();
