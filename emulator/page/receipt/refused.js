// A refused receipt: why it was refused, and the wrong fields in what was sent.

import {byId, make} from '../base/dom.js';
import {dateAndTime, money} from '../base/format.js';
import {labels} from '../base/texts.js';
import {codeBox, copyButton} from '../code/code.js';
import {plainLines} from '../code/json.js';
import {operationName} from '../list/list.js';
import {faultText, partsOf} from '../wire/wire.js';
import {ruleText} from './rules.js';
import {markedLines, valueOf} from './wrongfields.js';

function titleOf(refusal) {
  if (refusal.fields.length > 0) return labels.wrongFields(refusal.fields.length);
  if (refusal.fault) return labels.byFault;
  return refusal.code ? labels.refusedWith(refusal.code) : labels.notRegistered;
}

function fieldRow({field, rule}, lines) {
  const button = make('button', {type: 'button', className: 'field', textContent: field});
  button.addEventListener('click', () => {
    const line = byId(lines?.find(one => one.wrong?.fields.includes(field))?.wrong.anchor);
    line?.scrollIntoView({block: 'center'});
    line?.focus({preventScroll: true});
  });
  return make('li', {}, button, make('code', {className: 'sent', textContent: valueOf(lines, field)}),
    make('span', {className: 'rule', textContent: ruleText(rule)}));
}

function explanation(refusal) {
  if (refusal.fields.length > 0) return '';
  const text = refusal.fault ? faultText({...refusal, endpoint: 'sell'}) : labels.hints[refusal.code] ?? '';
  return text ? make('p', {textContent: text}) : '';
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

export function refusedBox(refusal) {
  const {body} = partsOf(refusal.request);
  const lines = markedLines(body, refusal.fields) ?? plainLines(body);
  const facts = [operationName(refusal.operation), refusal.group, dateAndTime(refusal.received_at), money(refusal.total ?? NaN)];
  return make('div', {className: 'refused-receipt'},
    make('div', {className: 'verdict'},
      make('h3', {textContent: titleOf(refusal)}),
      explanation(refusal),
      refusal.fields.length > 0 ? make('ul', {}, ...refusal.fields.map(one => fieldRow(one, lines))) : errorText(refusal)),
    make('p', {className: 'quiet', textContent: facts.join(' · ')}),
    make('div', {className: 'code-head'}, make('h3', {textContent: labels.sent}), copyButton(body, labels.sent)),
    codeBox(lines, labels.sent));
}
