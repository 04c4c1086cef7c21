// A refused receipt: why it was refused, and what is wrong in what was sent.

import {make} from '../base/dom.js';
import {dateAndTime, money} from '../base/format.js';
import {labels} from '../base/texts.js';
import {plainLines} from '../code/json.js';
import {operationName} from '../list/list.js';
import {faultText, partsOf} from '../wire/wire.js';
import {fieldRow, sentBox} from './marked.js';
import {markedHead} from './wronghead.js';
import {fieldRows, markedLines} from './wrongfields.js';

function titleOf(refusal) {
  if (refusal.fields.length > 0) return labels.wrongFields(refusal.fields.length);
  if (refusal.fault) return labels.byFault;
  return refusal.code ? labels.refusedWith(refusal.code) : labels.notRegistered;
}

/** The service's own words. */
function errorText(refusal) {
  try {
    const {error} = JSON.parse(partsOf(refusal.answer).body);
    return error?.text ? make('p', {className: 'words', lang: 'ru', textContent: `${labels.code} ${error.code}: ${error.text}`}) : '';
  } catch {
    return '';
  }
}

function explanation(refusal) {
  const text = refusal.fault ? faultText({...refusal, endpoint: 'sell'}) : labels.hints[refusal.code] ?? '';
  return [text ? make('p', {textContent: text}) : '', errorText(refusal)];
}

function reasons(refusal, lines, head) {
  if (refusal.fields.length > 0) return [make('ul', {}, ...fieldRows(refusal.fields, lines))];
  return head ? [make('ul', {}, fieldRow({...head, anchor: 'wrong-head'})), errorText(refusal)] : explanation(refusal);
}

export function refusedBox(refusal) {
  const {head, body} = partsOf(refusal.request);
  const lines = markedLines(body, refusal.fields) ?? plainLines(body);
  // The code of a fault says nothing of the call.
  const wrongHead = refusal.fault ? undefined : markedHead(head, refusal.code);
  const facts = [operationName(refusal.operation), refusal.group, dateAndTime(refusal.received_at), money(refusal.total ?? NaN)];
  return make('div', {className: 'refused-receipt'},
    make('div', {className: 'verdict'}, make('h3', {textContent: titleOf(refusal)}), ...reasons(refusal, lines, wrongHead)),
    make('p', {className: 'quiet', textContent: facts.join(' · ')}),
    ...sentBox(lines, body, wrongHead?.lines));
}
