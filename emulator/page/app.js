'use strict';

// What happens meanwhile.

let pending = [];
let flushTimer = 0;

function flush() {
  flushTimer = 0;
  const events = pending;
  pending = [];
  const receipts = new Map(events.filter(one => one.document).map(one => [one.document.uuid, one.document]));
  for (const receipt of [...receipts.values()].slice(-mostRows)) showReceipt(receipt);
  if (receipts.has(openUuid) || events.some(one => one.kind === 'lost')) openFromAddress();
  if (events.some(one => one.kind === 'cleared' || one.kind === 'lost')) refreshSoon();
  if (events.some(one => one.kind === 'faults' || one.kind === 'lost' || one.fault)) quietly(showFaults());
  quietly(showCalls());
}

function live(on) {
  byId('live').textContent = on ? say.live : say.offline;
  byId('live').className = on ? 'on' : 'off';
}

function follow() {
  const events = new EventSource(api + 'events');
  events.onopen = () => {
    live(true);
    quietly(refresh());
    quietly(showFaults());
    // What happened while the connection was lost brought no event.
    openFromAddress();
    quietly(showCalls());
  };
  events.onerror = () => live(false);
  events.onmessage = event => {
    pending.push(JSON.parse(event.data));
    if (!flushTimer) flushTimer = setTimeout(flush, 100);
  };
}

async function start() {
  document.documentElement.lang = language;
  for (const element of document.querySelectorAll('[data-text]')) element.textContent = say[element.dataset.text];
  byId('address').textContent = location.origin + '/possystem/v4/';
  await startFaults();
  startReceipts();
  follow();
}

start();
