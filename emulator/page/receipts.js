'use strict';

// The list of receipts, the opened receipt, and the calls.

const mostRows = 200;
const mostExchanges = 200;
let openUuid = '';

function fillRow(button, receipt) {
  const time = timeOf(receipt.received_at);
  const operation = receipt.operation === 'sell' ? '' : ` · ${(labels.operations[receipt.operation] || '').toLowerCase()}`;
  button.replaceChildren(
    make('span', {className: 'id', textContent: receipt.external_id}),
    make('span', {className: 'sum', textContent: money(receipt.total)}),
    make('small', {textContent: time + operation}),
    make('span', {className: 'pills'},
      receipt.wire_requests > 1
        ? make('small', {className: 'pill twice', textContent: `${labels.requests}: ${receipt.wire_requests}`}) : '',
      make('small', {className: 'pill ' + receipt.status, textContent: labels['status_' + receipt.status]})));
}

function receiptRow(receipt) {
  const button = make('button', {type: 'button'});
  button.dataset.uuid = receipt.uuid;
  button.addEventListener('click', () => {
    if (location.hash.slice(1) === receipt.uuid) openFromAddress();
    location.hash = receipt.uuid;
    // In a single column, the slip is below the list.
    if (matchMedia('(max-width: 62rem)').matches) byId('opened').scrollIntoView();
  });
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
  byId('list').prepend(receiptRow(receipt));
  while (byId('list').children.length > mostRows) byId('list').lastElementChild.remove();
  byId('none').hidden = true;
  byId('news').textContent = `${labels.arrived} ${receipt.external_id}, ${money(receipt.total)}`;
}

function markOpen() {
  for (const button of byId('list').querySelectorAll('button'))
    button.setAttribute('aria-current', String(button.dataset.uuid === openUuid));
}

function askForReceipts() {
  const text = byId('query').value;
  return ask(`documents?limit=${mostRows}` + (text ? `&text=${encodeURIComponent(text)}` : ''));
}

let refreshes = 0;
async function refresh() {
  const mine = ++refreshes;
  const found = await askForReceipts();
  // The search may have changed in the meantime.
  if (mine !== refreshes) return;
  const focused = document.activeElement.dataset.uuid;
  byId('list').replaceChildren(...found.documents.map(receiptRow));
  byId('none').hidden = found.documents.length > 0;
  byId('none').textContent = byId('query').value ? labels.noneFound : labels.none;
  if (focused) byId('list').querySelector(`button[data-uuid="${focused}"]`)?.focus();
  markOpen();
}

let refreshTimer = 0;
function refreshSoon() {
  clearTimeout(refreshTimer);
  refreshTimer = setTimeout(() => ignoreErrors(refresh()), 200);
}

async function refreshWaiting() {
  const waiting = [...byId('list').querySelectorAll('button:has(.wait)')];
  if (waiting.length > 0) {
    const found = await askForReceipts();
    for (const receipt of found.documents.filter(one => one.status !== 'wait')) {
      const button = waiting.find(one => one.dataset.uuid === receipt.uuid);
      if (button) fillRow(button, receipt);
    }
  }
  if (byId('detail').dataset.status === 'wait') await open(openUuid);
}

// A receipt becomes done as time passes, without an event.
async function pollWaiting() {
  try {
    await refreshWaiting();
  } catch {
    // A lost connection is shown at the top of the page and may be restored.
  }
  setTimeout(pollWaiting, 1000);
}

function faultText(fault) {
  const match = fault.match(/^(?:(.*) \()?(before|after) ([a-z-]+)\)?$/);
  if (!match) return fault;
  const what = `${labels.effects[match[3]] || match[3]}, ${labels['phase_' + match[2]]}`;
  return match[1] ? `${match[1]} (${what})` : what;
}

function answerPill(one) {
  const bad = !one.status || one.status >= 400;
  const code = one.code === undefined ? '' : `, ${labels.code} ${one.code}`;
  return make('span', {className: 'pill ' + (bad ? 'fail' : one.code === undefined ? 'done' : 'wait'),
    textContent: (one.status ? 'HTTP ' + one.status : labels.noAnswer) + code});
}

function exchangeBox(one) {
  const text = (name, content) => [make('p', {className: 'label', textContent: name}),
    make('pre', {tabIndex: 0, role: 'group', ariaLabel: name, textContent: content})];
  const box = make('details', {className: 'exchange'}, make('summary', {},
    make('span', {textContent: `${timeOf(one.at)} ${labels[one.endpoint]} `}), answerPill(one),
    one.fault ? make('small', {textContent: `${labels.fault}: ${faultText(one.fault)}`}) : ''));
  box.append(...text(labels.request, one.request), ...text(labels.answer, one.answer || labels.noAnswer));
  box.dataset.sequence = one.sequence;
  return box;
}

const shownExchanges = () => [...byId('detail').querySelectorAll('.exchange')];
const lastShown = () => Number(shownExchanges().at(-1)?.dataset.sequence || 0);

async function showEarlier() {
  const before = shownExchanges()[0]?.dataset.sequence;
  const uuid = openUuid;
  const {exchanges} = await ask(`documents/${uuid}/exchange?before=${before}`);
  if (uuid !== openUuid) return;
  byId('earlier').hidden = exchanges.length < 100;
  byId('earlier').dataset.used = 'yes';
  byId('earlier').after(...exchanges.map(exchangeBox));
}

function wireTitle(receipt) {
  const again = receipt.wire_requests > 1;
  return make('h3', {}, make('span', {textContent: labels.raw}),
    make('small', {className: again ? 'pill twice' : 'pill', textContent: `${labels.requests}: ${receipt.wire_requests}`}));
}

function showDetail(receipt, exchanges) {
  byId('choose').hidden = true;
  byId('opened-title').textContent = `${labels.opened} ${receipt.external_id}`;
  const detail = byId('detail');
  if (detail.dataset.uuid !== receipt.uuid) {
    const earlier = make('button', {type: 'button', id: 'earlier', textContent: labels.earlier,
      hidden: exchanges.length < 100});
    earlier.addEventListener('click', () => ignoreErrors(showEarlier()));
    detail.replaceChildren(slip(receipt), wireTitle(receipt), earlier);
  } else {
    // What the user is reading stays as it is.
    if (detail.dataset.status !== receipt.status) detail.querySelector('.paper').replaceWith(slip(receipt));
    detail.querySelector('h3').replaceWith(wireTitle(receipt));
  }
  Object.assign(detail.dataset, {uuid: receipt.uuid, status: receipt.status});
  const last = lastShown();
  detail.append(...exchanges.filter(one => one.sequence > last).map(exchangeBox));
  // Once the user has asked for earlier ones, all stay.
  if (byId('earlier').dataset.used) return;
  for (const old of shownExchanges().slice(0, -mostExchanges).filter(one => !one.open)) {
    old.remove();
    byId('earlier').hidden = false;
  }
}

async function open(uuid) {
  if (uuid !== openUuid) delete byId('detail').dataset.status;
  openUuid = uuid;
  markOpen();
  if (!uuid) return;
  const path = 'documents/' + encodeURIComponent(uuid);
  const after = byId('detail').dataset.uuid === uuid ? lastShown() : 0;
  const [receipt, wire] = await Promise.all([ask(path), ask(`${path}/exchange` + (after ? `?after=${after}` : ''))]);
  if (uuid === openUuid) showDetail(receipt, wire.exchanges);
}

function openFromAddress() {
  open(location.hash.slice(1)).catch(error => {
    delete byId('detail').dataset.uuid;
    delete byId('detail').dataset.status;
    byId('opened-title').textContent = labels.opened;
    byId('choose').hidden = true;
    byId('detail').textContent = error.message;
  });
}

// Calls of every kind.

async function showCalls() {
  if (!byId('calls').open) return;
  const {exchanges} = await ask('exchanges?limit=30');
  const boxes = [...byId('call-list').children];
  const shown = new Set(boxes.map(box => Number(box.dataset.sequence)));
  byId('call-list').prepend(...exchanges.filter(one => !shown.has(one.sequence)).map(exchangeBox));
  // What the user is reading stays as it is, and keeps the focus.
  const latest = new Set(exchanges.map(one => one.sequence));
  const isInUse = box => exchanges.length > 0 && (box.open || box.contains(document.activeElement));
  for (const box of boxes.filter(one => !latest.has(Number(one.dataset.sequence)) && !isInUse(one))) box.remove();
}

function startReceipts() {
  byId('list').addEventListener('keydown', event => {
    const step = {ArrowDown: 'nextElementSibling', ArrowUp: 'previousElementSibling'}[event.key];
    const other = step && event.target.closest('li')?.[step];
    if (!other) return;
    event.preventDefault();
    other.firstElementChild.focus();
  });
  byId('search').addEventListener('submit', event => { event.preventDefault(); ignoreErrors(refresh()); });
  byId('query').addEventListener('input', refreshSoon);
  byId('clear').addEventListener('click', () => {
    if (confirm(labels.clear + '?')) ignoreErrors(ask('documents', {method: 'DELETE'}));
  });
  byId('calls').addEventListener('toggle', () => ignoreErrors(showCalls()));
  addEventListener('hashchange', openFromAddress);
  openFromAddress();
  pollWaiting();
}
