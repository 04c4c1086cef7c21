'use strict';

// The list of receipts, the opened one, and the calls behind them.

const mostRows = 200;
const mostExchanges = 200;
let openUuid = '';

function fillRow(button, receipt) {
  const time = timeOf(receipt.received_at);
  const operation = receipt.operation === 'sell' ? '' : ` · ${(say.operations[receipt.operation] || '').toLowerCase()}`;
  button.replaceChildren(
    make('span', {className: 'id', textContent: receipt.external_id}),
    make('span', {className: 'sum', textContent: money(receipt.total)}),
    make('small', {textContent: time + operation}),
    make('span', {className: 'pills'},
      receipt.wire_requests > 1
        ? make('small', {className: 'pill twice', textContent: `${say.requests}: ${receipt.wire_requests}`}) : '',
      make('small', {className: 'pill ' + receipt.status, textContent: say['status_' + receipt.status]})));
}

function row(receipt) {
  const button = make('button', {type: 'button'});
  button.dataset.uuid = receipt.uuid;
  button.addEventListener('click', () => {
    if (location.hash.slice(1) === receipt.uuid) openFromAddress();
    location.hash = receipt.uuid;
    // In one column the slip is below the list.
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
  byId('list').prepend(row(receipt));
  while (byId('list').children.length > mostRows) byId('list').lastElementChild.remove();
  byId('none').hidden = true;
  byId('news').textContent = `${say.arrived} ${receipt.external_id}, ${money(receipt.total)}`;
}

function markOpen() {
  for (const button of byId('list').querySelectorAll('button'))
    button.setAttribute('aria-current', String(button.dataset.uuid === openUuid));
}

function askForList() {
  const text = byId('query').value;
  return ask(`documents?limit=${mostRows}` + (text ? `&text=${encodeURIComponent(text)}` : ''));
}

let refreshes = 0;
async function refresh() {
  const mine = ++refreshes;
  const found = await askForList();
  // An answer that was overtaken tells of what is no longer searched for.
  if (mine !== refreshes) return;
  const focused = document.activeElement.dataset.uuid;
  byId('list').replaceChildren(...found.documents.map(row));
  byId('none').hidden = found.documents.length > 0;
  byId('none').textContent = byId('query').value ? say.noneFound : say.none;
  if (focused) byId('list').querySelector(`button[data-uuid="${focused}"]`)?.focus();
  markOpen();
}

let refreshTimer = 0;
function refreshSoon() {
  clearTimeout(refreshTimer);
  refreshTimer = setTimeout(() => quietly(refresh()), 200);
}

async function lookAtWaiting() {
  const waiting = [...byId('list').querySelectorAll('button:has(.wait)')];
  if (waiting.length > 0) {
    const found = await askForList();
    for (const receipt of found.documents.filter(one => one.status !== 'wait')) {
      const button = waiting.find(one => one.dataset.uuid === receipt.uuid);
      if (button) fillRow(button, receipt);
    }
  }
  if (byId('detail').dataset.status === 'wait') await open(openUuid);
}

// A receipt becomes done by the passing of time alone, which brings no event.
async function lookAfterWaiting() {
  try {
    await lookAtWaiting();
  } catch {
    // The head of the page says that the connection is lost; it may come back.
  }
  setTimeout(lookAfterWaiting, 1000);
}

function faultText(fault) {
  const match = fault.match(/^(?:(.*) \()?(before|after) ([a-z-]+)\)?$/);
  if (!match) return fault;
  const what = `${say.effects[match[3]] || match[3]}, ${match[2] === 'before' ? say.before : say.afterPhase}`;
  return match[1] ? `${match[1]} (${what})` : what;
}

function answerPill(one) {
  const bad = !one.status || one.status >= 400;
  const code = one.code === undefined ? '' : `, ${say.code} ${one.code}`;
  return make('span', {className: 'pill ' + (bad ? 'fail' : one.code === undefined ? 'done' : 'wait'),
    textContent: (one.status ? 'HTTP ' + one.status : say.noAnswer) + code});
}

function exchange(one) {
  const text = (name, content) => [make('p', {className: 'label', textContent: name}),
    make('pre', {tabIndex: 0, role: 'group', ariaLabel: name, textContent: content})];
  const box = make('details', {className: 'exchange'}, make('summary', {},
    make('span', {textContent: `${timeOf(one.at)} ${say[one.endpoint]} `}), answerPill(one),
    one.fault ? make('small', {textContent: `${say.fault}: ${faultText(one.fault)}`}) : ''));
  box.append(...text(say.request, one.request), ...text(say.answer, one.answer || say.noAnswer));
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
  byId('earlier').after(...exchanges.map(exchange));
}

function wireTitle(receipt) {
  const again = receipt.wire_requests > 1;
  return make('h3', {}, make('span', {textContent: say.raw}),
    make('small', {className: again ? 'pill twice' : 'pill', textContent: `${say.requests}: ${receipt.wire_requests}`}));
}

function showDetail(receipt, exchanges) {
  byId('choose').hidden = true;
  byId('opened-title').textContent = `${say.opened} ${receipt.external_id}`;
  const detail = byId('detail');
  if (detail.dataset.uuid !== receipt.uuid) {
    const earlier = make('button', {type: 'button', id: 'earlier', textContent: say.earlier,
      hidden: exchanges.length < 100});
    earlier.addEventListener('click', () => quietly(showEarlier()));
    detail.replaceChildren(slip(receipt), wireTitle(receipt), earlier);
  } else {
    // What someone reads or has opened stays as it is.
    if (detail.dataset.status !== receipt.status) detail.querySelector('.paper').replaceWith(slip(receipt));
    detail.querySelector('h3').replaceWith(wireTitle(receipt));
  }
  Object.assign(detail.dataset, {uuid: receipt.uuid, status: receipt.status});
  const last = lastShown();
  detail.append(...exchanges.filter(one => one.sequence > last).map(exchange));
  // Who asks for earlier ones keeps them all.
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
    byId('opened-title').textContent = say.opened;
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
  byId('call-list').prepend(...exchanges.filter(one => !shown.has(one.sequence)).map(exchange));
  // What someone reads stays as it is, the focus too.
  const latest = new Set(exchanges.map(one => one.sequence));
  const isRead = box => exchanges.length > 0 && (box.open || box.contains(document.activeElement));
  for (const box of boxes.filter(one => !latest.has(Number(one.dataset.sequence)) && !isRead(one))) box.remove();
}

function startReceipts() {
  byId('list').addEventListener('keydown', event => {
    const step = {ArrowDown: 'nextElementSibling', ArrowUp: 'previousElementSibling'}[event.key];
    const other = step && event.target.closest('li')?.[step];
    if (!other) return;
    event.preventDefault();
    other.firstElementChild.focus();
  });
  byId('search').addEventListener('submit', event => { event.preventDefault(); quietly(refresh()); });
  byId('query').addEventListener('input', refreshSoon);
  byId('clear').addEventListener('click', () => {
    if (confirm(say.clear + '?')) quietly(ask('documents', {method: 'DELETE'}));
  });
  byId('calls').addEventListener('toggle', () => quietly(showCalls()));
  addEventListener('hashchange', openFromAddress);
  openFromAddress();
  lookAfterWaiting();
}
