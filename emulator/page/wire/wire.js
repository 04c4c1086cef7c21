// A call and its answer as they were on the wire.

import {make} from '../base/dom.js';
import {timeOf} from '../base/format.js';
import {callbackFailure, labels} from '../base/texts.js';
import {codeBox, copyButton} from '../code/code.js';
import {jsonLines, plainLines} from '../code/json.js';

export function faultText(one) {
  const match = one.fault.match(/^(?:(.*) \()?(before|after) ([a-z-]+)\)?$/);
  if (!match) return one.fault;
  const what = [labels.effects[match[3]] || match[3], phaseOf({...one, effect: match[3], phase: match[2]})].filter(Boolean).join('; ');
  return match[1] ? `${match[1]} (${what})` : what;
}

export const phaseText = (endpoint, phase) => labels[endpoint === 'sell' ? 'sellPhases' : 'phases'][phase];

/** When a fault hits; nothing for those that leave the answer to a register call alone. */
export function phaseOf({endpoint, effect, phase}) {
  const ofDocument = endpoint === 'sell' && ['fail', 'never'].includes(effect);
  return ofDocument ? '' : phaseText(endpoint, phase);
}

export function answerPill(one) {
  const bad = !one.status || one.status >= 400;
  const code = one.code === undefined || one.code === null ? '' : `, ${labels.code} ${one.code}`;
  return make('span', {className: 'pill ' + (bad ? 'fail' : code ? 'wait' : 'done'),
    textContent: (one.status ? 'HTTP ' + one.status : one.request ? labels.noAnswer : labels.notCalled) + code});
}

/** Head and body of a message as they were sent. */
export function partsOf(message) {
  const end = message.indexOf('\r\n\r\n');
  return end < 0 ? {head: message, body: ''} : {head: message.slice(0, end), body: message.slice(end + 4)};
}

export const linesOf = body => jsonLines(body) ?? plainLines(body);

/** A message with its heading. */
function messageBox(name, message) {
  if (!message) return make('div', {className: 'message'}, make('p', {className: 'label', textContent: name}),
    make('p', {className: 'quiet', textContent: labels.noAnswer}));
  const {head, body} = partsOf(message);
  return make('div', {className: 'message'},
    make('div', {className: 'code-head'}, make('p', {className: 'label', textContent: name}), copyButton(body || head, name)),
    make('pre', {className: 'head', tabIndex: 0, role: 'group', ariaLabel: `${name}: ${labels.head}`, textContent: head}),
    body ? codeBox(linesOf(body), `${name}: ${labels.body}`) : '');
}

/** What went wrong with a callback, or what a fault did to a call. */
function troubleText(one) {
  return one.endpoint === 'callback' ? callbackFailure(one.fault) : `${labels.fault}: ${faultText(one)}`;
}

export function exchangeBox(one) {
  const box = make('details', {className: 'exchange'}, make('summary', {},
    make('span', {textContent: `${timeOf(one.at)} ${labels[one.endpoint]} `}), answerPill(one),
    one.fault ? make('small', {textContent: troubleText(one)}) : ''));
  // A callback that was not made has neither.
  if (one.request || one.answer) box.append(messageBox(labels.request, one.request), messageBox(labels.answer, one.answer));
  box.dataset.sequence = one.sequence;
  return box;
}
