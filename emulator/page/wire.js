// A call and its answer as they were on the wire.

import {make} from './dom.js';
import {timeOf} from './format.js';
import {labels} from './texts.js';

function faultText(fault) {
  const match = fault.match(/^(?:(.*) \()?(before|after) ([a-z-]+)\)?$/);
  if (!match) return fault;
  const what = `${labels.effects[match[3]] || match[3]}, ${labels['phase_' + match[2]]}`;
  return match[1] ? `${match[1]} (${what})` : what;
}

function answerPill(one) {
  const bad = !one.status || one.status >= 400;
  const code = one.code === undefined ? '' : `, ${labels.code} ${one.code}`;
  return make('span', {className: 'pill ' + (bad ? 'fail' : one.code === undefined ? 'done' : 'wait'),
    textContent: (one.status ? 'HTTP ' + one.status : labels.noAnswer) + code});
}

export function exchangeBox(one) {
  const text = (name, content) => [make('p', {className: 'label', textContent: name}),
    make('pre', {tabIndex: 0, role: 'group', ariaLabel: name, textContent: content})];
  const box = make('details', {className: 'exchange'}, make('summary', {},
    make('span', {textContent: `${timeOf(one.at)} ${labels[one.endpoint]} `}), answerPill(one),
    one.fault ? make('small', {textContent: `${labels.fault}: ${faultText(one.fault)}`}) : ''));
  box.append(...text(labels.request, one.request), ...text(labels.answer, one.answer || labels.noAnswer));
  box.dataset.sequence = one.sequence;
  return box;
}
