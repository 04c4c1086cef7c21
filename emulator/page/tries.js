// Two register calls of one receipt side by side.

import {make, setOptions} from './dom.js';
import {timeOf} from './format.js';
import {textOf} from './json.js';
import {labels} from './texts.js';
import {answerPill, linesOf, messageBox, partsOf} from './wire.js';

/** The lines of one body, those that the other lacks marked. */
function compared(message, other) {
  const lines = linesOf(partsOf(message).body);
  const content = line => `${line.path ?? ''} ${textOf(line).replace(/,$/, '')}`;
  const others = new Set(linesOf(partsOf(other).body).map(content));
  for (const line of lines) line.differs = !others.has(content(line));
  return lines;
}

function column(calls, index, other, change) {
  const call = calls[index];
  const select = make('select', {ariaLabel: labels.whichTry});
  setOptions(select, calls.map((one, i) => [i, `${i + 1}. ${timeOf(one.at)}`]));
  select.value = index;
  select.addEventListener('change', () => change(Number(select.value)));
  return make('div', {className: 'try'}, make('p', {className: 'try-head'}, select, answerPill(call)),
    messageBox(labels.request, call.request, compared(call.request, calls[other].request)),
    messageBox(labels.answer, call.answer, call.answer ? compared(call.answer, calls[other].answer) : undefined));
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
