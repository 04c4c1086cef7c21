// The latest calls of every kind.

import {ask, ignoreErrors} from '../base/api.js';
import {byId} from '../base/dom.js';
import {api} from '../base/paths.js';
import {exchangeBox} from './wire.js';

export async function showCalls() {
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

export function startCalls() {
  byId('recording').href = api + 'recording';
  byId('calls').addEventListener('toggle', () => ignoreErrors(showCalls()));
}
