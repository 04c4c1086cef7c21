// The list of receipts with its filters.

import {ask, ignoreErrors} from '../base/api.js';
import {byId, make, setOptions} from '../base/dom.js';
import {dateAndTime, money} from '../base/format.js';
import {labels} from '../base/texts.js';

const mostRows = 200;
const statuses = ['done', 'wait', 'fail', 'refused'];
let chosen = '';
let status = '';
let shown = [];

/** Identifies a receipt on the page and in its address. */
export const keyOf = receipt => receipt.uuid ?? 'refused-' + receipt.refusal;

export function operationName(operation) {
  const name = labels.operations[operation];
  return name ? name[0] + name.slice(1).toLowerCase() : operation;
}


export const shownReceipts = () => shown;

export function statusPill(receipt) {
  const code = receipt.status !== 'refused' ? '' : receipt.code ? ` ${receipt.code}` : receipt.http_status ? ` HTTP ${receipt.http_status}` : '';
  return make('small', {className: 'pill ' + receipt.status, textContent: labels['status_' + receipt.status] + code});
}

/** What is wrong, in a word. The code of a fault says nothing of the call. */
function reasonOf(receipt) {
  if (receipt.first_field) return receipt.first_field.field;
  return receipt.status === 'refused' && !receipt.fault ? labels.places[receipt.code] : undefined;
}

function receiptRow(receipt) {
  const reason = reasonOf(receipt);
  const button = make('button', {type: 'button'},
    make('span', {className: 'id', textContent: receipt.external_id || labels.noId}),
    make('span', {className: 'sum', textContent: money(receipt.total ?? NaN)}),
    make('small', {textContent: `${operationName(receipt.operation)} · ${receipt.group}`}),
    make('span', {className: 'pills'}, statusPill(receipt)),
    reason ? make('small', {className: 'reason', textContent: reason}) : '',
    make('small', {textContent: dateAndTime(receipt.received_at)}),
    receipt.wire_requests > 1
      ? make('small', {className: 'tries-count', textContent: `${labels.requests}: ${receipt.wire_requests}`}) : '');
  button.dataset.key = keyOf(receipt);
  button.addEventListener('click', () => {
    // Opens it again after an error, and on a phone after the way back.
    if (location.hash.slice(1) === keyOf(receipt)) dispatchEvent(new Event('hashchange'));
    location.hash = keyOf(receipt);
  });
  return make('li', {}, button);
}

function markChosen() {
  for (const button of byId('list').querySelectorAll('button'))
    button.setAttribute('aria-current', String(button.dataset.key === chosen));
}

/** Marks the receipt as the one that is open. */
export function choose(key) {
  chosen = key;
  markChosen();
}

const filters = () => ({text: byId('query').value, status, group: byId('of-group').value, operation: byId('of-kind').value});

function askForReceipts() {
  const wanted = Object.entries(filters()).filter(([, value]) => value);
  return ask('receipts?' + new URLSearchParams([['limit', mostRows], ...wanted]));
}

function showCounts(counts) {
  const all = statuses.reduce((sum, one) => sum + counts[one], 0);
  for (const button of byId('statuses').children) {
    const of = button.dataset.status;
    button.querySelector('b').textContent = of ? counts[of] : all;
    button.setAttribute('aria-pressed', String(of === status));
    // A status that nothing has is only in the way.
    button.hidden = Boolean(of) && counts[of] === 0 && of !== status;
  }
}

function showEmptiness() {
  const filtered = Object.values(filters()).some(Boolean);
  byId('none').hidden = shown.length > 0 || !filtered;
  byId('beginning').hidden = shown.length > 0 || filtered;
  byId('search').hidden = byId('statuses').hidden = !byId('beginning').hidden;
  byId('list-foot').hidden = shown.length === 0;
  document.body.classList.toggle('empty', shown.length === 0 && !filtered && !chosen);
}

function announce(before) {
  const [newest] = shown;
  if (!newest || before === undefined || before === keyOf(newest) || Object.values(filters()).some(Boolean)) return;
  byId('news').textContent = `${labels.arrived} ${newest.external_id || labels.noId}, ${money(newest.total ?? NaN)}, ${labels['status_' + newest.status]}`;
}

let refreshes = 0;
let outdated = false;
export async function refresh() {
  const mine = ++refreshes;
  outdated = true;
  const found = await askForReceipts();
  // The filters may have changed in the meantime.
  if (mine !== refreshes) return;
  outdated = false;
  const before = shown.length > 0 ? keyOf(shown[0]) : refreshes > 1 ? '' : undefined;
  shown = found.receipts;
  const focused = document.activeElement.dataset.key;
  byId('list').replaceChildren(...shown.map(receiptRow));
  if (focused) byId('list').querySelector(`button[data-key="${focused}"]`)?.focus();
  markChosen();
  showCounts(found.counts);
  showEmptiness();
  announce(before);
}

let refreshTimer = 0;
export function refreshSoon() {
  refreshTimer ||= setTimeout(() => {
    refreshTimer = 0;
    ignoreErrors(refresh());
  }, 150);
}

/** A receipt becomes done as time passes, without an event. The latest refresh may have failed. */
export async function refreshWaiting() {
  if (outdated || shown.some(one => one.status === 'wait')) await refresh();
}

function startFilters(accounts) {
  byId('statuses').replaceChildren(...['', ...statuses].map(of => {
    const button = make('button', {type: 'button', ariaPressed: String(of === '')},
      (of ? labels['status_' + of] : labels.all) + ' ', make('b', {}));
    button.dataset.status = of;
    button.addEventListener('click', () => {
      status = of === status ? '' : of;
      ignoreErrors(refresh());
    });
    return button;
  }));
  setOptions(byId('of-group'), [['', labels.allGroups], ...accounts.groups.map(one => [one.code, one.code])]);
  byId('of-group').closest('p').hidden = accounts.groups.length < 2;
  setOptions(byId('of-kind'), [['', labels.allKinds], ...accounts.operations.map(one => [one, operationName(one)])]);
  for (const id of ['of-group', 'of-kind']) byId(id).addEventListener('change', () => ignoreErrors(refresh()));
  byId('query').addEventListener('input', refreshSoon);
  byId('search').addEventListener('submit', event => { event.preventDefault(); ignoreErrors(refresh()); });
}

export function startList(accounts) {
  startFilters(accounts);
  byId('list').addEventListener('keydown', event => {
    const step = {ArrowDown: 'nextElementSibling', ArrowUp: 'previousElementSibling'}[event.key];
    const other = step && event.target.closest('li')?.[step];
    if (!other) return;
    event.preventDefault();
    other.firstElementChild.focus();
  });
  byId('clear').addEventListener('click', () => byId('clearing').showModal());
  byId('clearing').addEventListener('close', () => {
    if (byId('clearing').returnValue === 'delete') ignoreErrors(ask('documents', {method: 'DELETE'}));
    byId('clearing').returnValue = '';
  });
}
