// Events, and the start of the page.

import {ask, ignoreErrors} from './base/api.js';
import {byId} from './base/dom.js';
import {labels, language} from './base/texts.js';
import {showFaults, startFaults} from './faults/faults.js';
import {startPanes} from './frame/panes.js';
import {untilAnswered} from './frame/starting.js';
import {startTheme} from './frame/theme.js';
import {showBeginning} from './list/beginning.js';
import {startExport} from './list/csv.js';
import {refresh, refreshWaiting, shownReceipts, startList} from './list/list.js';
import {closeReceipt, isOpen, openFirst, refreshOpened, reopen, startReceipt} from './receipt/receipt.js';
import {followEvents} from './stream/events.js';
import {showCalls, startCalls} from './wire/calls.js';

let pendingEvents = [];
let eventsTimer = 0;

// They do not apply to a recording.
const hasFaults = () => !document.body.classList.contains('replay');

async function showReceipts() {
  await refresh();
  openFirst(shownReceipts()[0]);
}

function handleEvents() {
  eventsTimer = 0;
  const events = pendingEvents;
  pendingEvents = [];
  const has = kind => events.some(one => one.kind === kind);
  if (has('cleared')) closeReceipt();
  if (has('cleared') || has('lost') || events.some(one => one.endpoint === 'sell')) ignoreErrors(showReceipts());
  if (has('lost') || events.some(isOpen)) reopen();
  if (hasFaults() && (has('faults') || has('lost') || events.some(one => one.fault))) ignoreErrors(showFaults());
  ignoreErrors(showCalls());
}

function showConnection(live) {
  byId('live').textContent = live ? labels.live : labels.offline;
  byId('live').className = live ? 'on' : 'off';
}

function connected(live) {
  showConnection(live);
  if (!live) return;
  // There were no events while the connection was lost.
  reopen();
  ignoreErrors(showReceipts());
  if (hasFaults()) ignoreErrors(showFaults());
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
  for (const element of document.querySelectorAll('[data-label]')) element.ariaLabel = labels[element.dataset.label];
  byId('address').textContent = location.origin + '/possystem/v4/';
  startTheme();
  startPanes();
  const [accounts, {effects}] = await untilAnswered(signal => Promise.all(['service', 'effects'].map(path => ask(path, {signal}))));
  showBeginning(accounts);
  startList(accounts);
  startExport();
  startCalls();
  startReceipt();
  if (accounts.replay) document.body.classList.add('replay');
  else startFaults(effects);
  pollWaiting();
  followEvents({state: connected, event: collect});
}

start();
