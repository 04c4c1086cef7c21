// Events, and the start of the page.

import {ignoreErrors} from './api.js';
import {showCalls, startCalls} from './calls.js';
import {byId} from './dom.js';
import {followEvents} from './events.js';
import {showFaults, startFaults} from './faults.js';
import {refresh, refreshSoon, refreshWaiting, showReceipt, startList} from './list.js';
import {isOpen, openFromAddress, refreshOpened, startReceipt} from './receipt.js';
import {labels, language} from './texts.js';

let pendingEvents = [];
let eventsTimer = 0;

function handleEvents() {
  eventsTimer = 0;
  const events = pendingEvents;
  pendingEvents = [];
  const receipts = new Map(events.filter(one => one.document).map(one => [one.document.uuid, one.document]));
  for (const receipt of receipts.values()) showReceipt(receipt);
  if ([...receipts.keys()].some(isOpen) || events.some(one => one.kind === 'lost')) openFromAddress();
  if (events.some(one => one.kind === 'cleared' || one.kind === 'lost')) refreshSoon();
  if (events.some(one => one.kind === 'faults' || one.kind === 'lost' || one.fault)) ignoreErrors(showFaults());
  ignoreErrors(showCalls());
}

function showConnection(live) {
  byId('live').textContent = live ? labels.live : labels.offline;
  byId('live').className = live ? 'on' : 'off';
}

function connected(live) {
  showConnection(live);
  if (!live) return;
  ignoreErrors(refresh());
  ignoreErrors(showFaults());
  // There were no events while the connection was lost.
  openFromAddress();
  ignoreErrors(showCalls());
}

function collect(event) {
  pendingEvents.push(event);
  if (!eventsTimer) eventsTimer = setTimeout(handleEvents, 100);
}

async function pollWaiting() {
  try {
    await refreshWaiting();
    await refreshOpened();
  } catch {
    // A lost connection is shown at the top of the page and may be restored.
  }
  setTimeout(pollWaiting, 1000);
}

async function start() {
  document.documentElement.lang = language;
  for (const element of document.querySelectorAll('[data-text]')) element.textContent = labels[element.dataset.text];
  byId('address').textContent = location.origin + '/possystem/v4/';
  await startFaults();
  startList();
  startCalls();
  startReceipt();
  pollWaiting();
  followEvents({state: connected, event: collect});
}

start();
