// The list of receipts.

import {ask, ignoreErrors} from './api.js';
import {byId, make} from './dom.js';
import {money, timeOf} from './format.js';
import {labels} from './texts.js';

const mostRows = 200;
let chosen = '';

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
    if (location.hash.slice(1) === receipt.uuid) dispatchEvent(new Event('hashchange'));
    location.hash = receipt.uuid;
    // In a single column, the slip is below the list.
    if (matchMedia('(max-width: 62rem)').matches) byId('opened').scrollIntoView();
  });
  fillRow(button, receipt);
  return make('li', {}, button);
}

export function showReceipt(receipt) {
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

/** Marks the receipt as the one that is open. */
export function choose(uuid) {
  chosen = uuid;
  markChosen();
}

function markChosen() {
  for (const button of byId('list').querySelectorAll('button'))
    button.setAttribute('aria-current', String(button.dataset.uuid === chosen));
}

function askForReceipts() {
  const text = byId('query').value;
  return ask(`documents?limit=${mostRows}` + (text ? `&text=${encodeURIComponent(text)}` : ''));
}

let refreshes = 0;
export async function refresh() {
  const mine = ++refreshes;
  const found = await askForReceipts();
  // The search may have changed in the meantime.
  if (mine !== refreshes) return;
  const focused = document.activeElement.dataset.uuid;
  byId('list').replaceChildren(...found.documents.map(receiptRow));
  byId('none').hidden = found.documents.length > 0;
  byId('none').textContent = byId('query').value ? labels.noneFound : labels.none;
  if (focused) byId('list').querySelector(`button[data-uuid="${focused}"]`)?.focus();
  markChosen();
}

let refreshTimer = 0;
export function refreshSoon() {
  clearTimeout(refreshTimer);
  refreshTimer = setTimeout(() => ignoreErrors(refresh()), 200);
}

/** A receipt becomes done as time passes, without an event. */
export async function refreshWaiting() {
  const waiting = [...byId('list').querySelectorAll('button:has(.wait)')];
  if (waiting.length === 0) return;
  const found = await askForReceipts();
  for (const receipt of found.documents.filter(one => one.status !== 'wait')) {
    const button = waiting.find(one => one.dataset.uuid === receipt.uuid);
    if (button) fillRow(button, receipt);
  }
}

export function startList() {
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
}
