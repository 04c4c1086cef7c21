// The opened receipt.

import {ask, ignoreErrors} from '../base/api.js';
import {byId, make} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {showPane} from '../frame/panes.js';
import {choose, keyOf, statusPill} from '../list/list.js';
import {triesBox} from '../wire/tries.js';
import {exchangeBox} from '../wire/wire.js';
import {failedBox} from './failed.js';
import {refusedBox} from './refused.js';
import {slip} from './slip.js';

const mostExchanges = 200;
const prefix = 'refused-';
let openKey = '';
let opened;
let calls = [];

const shownExchanges = () => [...byId('detail').querySelectorAll('.exchange')];
const isRefusal = key => key.startsWith(prefix);
const pathOf = key => isRefusal(key) ? 'refusals/' + key.slice(prefix.length) : 'documents/' + encodeURIComponent(key);

/** The calls of a receipt, or of the id of a refused one. */
async function exchangesOf(receipt, range) {
  if (receipt.uuid) return (await ask(`documents/${receipt.uuid}/exchange?` + new URLSearchParams(range))).exchanges;
  if (receipt.external_id) {
    const wanted = {group: receipt.group, external_id: receipt.external_id, ...range};
    return (await ask('exchanges?' + new URLSearchParams(wanted))).exchanges;
  }
  const {refusal: sequence, received_at: at, http_status: status} = receipt;
  return range.before ? [] : [{...receipt, sequence, at, status, endpoint: 'sell'}];
}

async function showEarlier() {
  const receipt = opened;
  const exchanges = await exchangesOf(receipt, {before: shownExchanges()[0]?.dataset.sequence});
  if (receipt !== opened) return;
  byId('earlier').hidden = exchanges.length < 100;
  byId('earlier').dataset.used = 'yes';
  byId('earlier').after(...exchanges.map(exchangeBox));
}

function titleBox(receipt) {
  return make('div', {className: 'receipt-title'},
    make('p', {}, statusPill(receipt), make('small', {className: 'pill', textContent: `${labels.requests}: ${receipt.wire_requests}`})),
    ...receipt.status === 'fail' ? failedBox(receipt) : []);
}

function drawAnew(receipt, full) {
  const earlier = make('button', {type: 'button', id: 'earlier', textContent: labels.earlier, hidden: !full});
  earlier.addEventListener('click', () => ignoreErrors(showEarlier()));
  byId('opened').scrollTop = 0;
  byId('detail').replaceChildren(titleBox(receipt), receipt.uuid ? slip(receipt) : refusedBox(receipt),
    make('h3', {textContent: labels.raw}), make('div', {id: 'tries'}), earlier);
}

function showTries() {
  const box = triesBox(calls);
  const old = byId('tries').firstElementChild;
  // What the user is reading stays as it is.
  if (!box || old?.dataset.calls === box.dataset.calls || old?.open) return;
  byId('tries').replaceChildren(box);
}

function showDetail(receipt, exchanges) {
  byId('choose').hidden = true;
  byId('opened-title').textContent = `${labels.opened} ${receipt.external_id || labels.noId}`;
  const detail = byId('detail');
  if (detail.dataset.key !== keyOf(receipt)) {
    calls = [];
    drawAnew(receipt, exchanges.length >= 100);
  } else {
    // What the user is reading stays as it is.
    if (detail.dataset.status !== receipt.status) detail.querySelector('.paper').replaceWith(slip(receipt));
    detail.querySelector('.receipt-title').replaceWith(titleBox(receipt));
  }
  Object.assign(detail.dataset, {key: keyOf(receipt), status: receipt.status});
  const last = Number(calls.at(-1)?.sequence ?? 0);
  const fresh = exchanges.filter(one => one.sequence > last);
  calls = [...calls, ...fresh].slice(-mostExchanges);
  detail.append(...fresh.map(exchangeBox));
  showTries();
  // Once the user has asked for earlier ones, all stay.
  if (byId('earlier').dataset.used) return;
  for (const old of shownExchanges().slice(0, -mostExchanges).filter(one => !one.open)) {
    old.remove();
    byId('earlier').hidden = false;
  }
}

/** What is known now of the id of a refused receipt: the registered one, or a later refusal. */
async function latestOf({group, external_id}) {
  const {receipts} = await ask('receipts?' + new URLSearchParams({group, external_id}));
  return receipts.find(one => one.external_id === external_id);
}

async function load(key) {
  const again = isRefusal(key) && opened?.external_id && keyOf(opened) === key;
  const latest = again ? await latestOf(opened) : undefined;
  if (latest && keyOf(latest) !== key && openKey === key) {
    openKey = keyOf(latest);
    history.replaceState(null, '', '#' + openKey);
    choose(openKey);
  }
  return ask(pathOf(openKey));
}

async function open(key) {
  if (key !== openKey) delete byId('detail').dataset.status;
  openKey = key;
  choose(key);
  if (!key) return;
  const receipt = await load(key);
  const after = byId('detail').dataset.key === keyOf(receipt) ? calls.at(-1)?.sequence : undefined;
  const exchanges = await exchangesOf(receipt, after ? {after} : {});
  if (keyOf(receipt) !== openKey) return;
  opened = receipt;
  showDetail(receipt, exchanges);
}

function showFailure(error) {
  delete byId('detail').dataset.key;
  delete byId('detail').dataset.status;
  opened = undefined;
  byId('opened-title').textContent = labels.opened;
  byId('choose').hidden = true;
  byId('detail').textContent = error.message;
}

/** Shows the opened receipt as it is now. */
export function reopen() {
  open(openKey).catch(showFailure);
}

export const isOpen = one => opened && one.external_id === opened.external_id && one.group === opened.group;

function openFromAddress() {
  const key = location.hash.slice(1);
  showPane(key ? 'opened' : 'receipts');
  open(key || openKey).catch(showFailure);
}

/** Opens the receipt that the address names or, if it names none, `newest`. */
export function openFirst(newest) {
  if (openKey) return;
  if (location.hash.length > 1) openFromAddress();
  else if (newest) open(keyOf(newest)).catch(showFailure);
}

/** A receipt becomes done as time passes, without an event. */
export async function refreshOpened() {
  if (byId('detail').dataset.status === 'wait') await open(openKey);
}

/** All receipts were deleted. */
export function closeReceipt() {
  if (location.hash) history.replaceState(null, '', location.pathname);
  opened = undefined;
  openKey = '';
  for (const name of ['key', 'status']) delete byId('detail').dataset[name];
  byId('detail').replaceChildren();
  byId('opened-title').textContent = labels.opened;
  byId('choose').hidden = false;
  choose('');
  showPane('receipts');
}

export function startReceipt() {
  addEventListener('hashchange', openFromAddress);
  byId('back').addEventListener('click', () => {
    const key = openKey;
    location.hash = '';
    // The list must be visible to get the focus.
    showPane('receipts');
    byId('list').querySelector(`button[data-key="${key}"]`)?.focus();
  });
}
