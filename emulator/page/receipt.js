// The opened receipt.

import {ask, ignoreErrors} from './api.js';
import {byId, make} from './dom.js';
import {choose} from './list.js';
import {slip} from './slip.js';
import {labels} from './texts.js';
import {exchangeBox} from './wire.js';

const mostExchanges = 200;
let openUuid = '';

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
  choose(uuid);
  if (!uuid) return;
  const path = 'documents/' + encodeURIComponent(uuid);
  const after = byId('detail').dataset.uuid === uuid ? lastShown() : 0;
  const [receipt, wire] = await Promise.all([ask(path), ask(`${path}/exchange` + (after ? `?after=${after}` : ''))]);
  if (uuid === openUuid) showDetail(receipt, wire.exchanges);
}

export function openFromAddress() {
  open(location.hash.slice(1)).catch(error => {
    delete byId('detail').dataset.uuid;
    delete byId('detail').dataset.status;
    byId('opened-title').textContent = labels.opened;
    byId('choose').hidden = true;
    byId('detail').textContent = error.message;
  });
}

export const isOpen = uuid => uuid === openUuid;

/** A receipt becomes done as time passes, without an event. */
export async function refreshOpened() {
  if (byId('detail').dataset.status === 'wait') await open(openUuid);
}

export function startReceipt() {
  addEventListener('hashchange', openFromAddress);
  openFromAddress();
}
