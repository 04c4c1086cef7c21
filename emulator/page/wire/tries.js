// Two register calls of one receipt side by side.

import {make, setOptions} from '../base/dom.js';
import {timeOf} from '../base/format.js';
import {labels} from '../base/texts.js';
import {codeBox} from '../code/code.js';
import {textOf} from '../code/json.js';
import {answerPill, linesOf, partsOf} from './wire.js';

/** The lines of one body, those that the other lacks marked. */
function compared(message, other) {
  const lines = linesOf(partsOf(message).body);
  const content = line => `${line.path ?? ''} ${textOf(line).replace(/,$/, '')}`;
  const others = new Set(linesOf(partsOf(other).body).map(content));
  for (const line of lines) line.differs = !others.has(content(line));
  return lines;
}

/** Only the body; the headers are below, with every call. */
function bodyBox(name, message, other) {
  return make('div', {className: 'message'}, make('p', {className: 'label', textContent: name}),
    message ? codeBox(compared(message, other), name) : make('p', {className: 'quiet', textContent: labels.noAnswer}));
}

function column(calls, index, other, change) {
  const call = calls[index];
  const select = make('select', {ariaLabel: labels.whichTry});
  setOptions(select, calls.map((one, i) => [i, `${i + 1}. ${timeOf(one.at)}`]));
  select.value = index;
  select.addEventListener('change', () => change(Number(select.value)));
  return make('div', {className: 'try'}, make('p', {className: 'try-head'}, select, answerPill(call)),
    bodyBox(labels.request, call.request, calls[other].request), bodyBox(labels.answer, call.answer, calls[other].answer));
}

/** Nothing if there are fewer than two. */
export function triesBox(exchanges) {
  const calls = exchanges.filter(one => one.endpoint === 'sell');
  if (calls.length < 2) return '';
  let pair = [calls.length - 2, calls.length - 1];
  const grid = make('div', {className: 'tries-pair'});
  const draw = () => grid.replaceChildren(...pair.map((index, side) => column(calls, index, pair[1 - side], wanted => {
    pair = pair.with(side, wanted);
    draw();
    grid.querySelectorAll('select')[side].focus();
  })));
  const box = make('details', {className: 'tries'}, make('summary', {textContent: labels.compare}), grid);
  box.dataset.calls = calls.length;
  box.addEventListener('toggle', () => { if (box.open && !grid.firstChild) draw(); });
  return box;
}
