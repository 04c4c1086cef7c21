// Text in numbered lines.

import {make} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {textOf} from './json.js';

const context = 3;
const leastFolded = 6;

function lineBox(line, number) {
  const box = make('span', {className: 'line'},
    ...line.parts.map(one => make('span', {className: one.kind, textContent: one.text})), '\n');
  if (number) box.dataset.number = number;
  box.style.setProperty('--depth', line.depth);
  if (line.differs) box.classList.add('differs');
  if (line.wrong) {
    box.classList.add('wrong');
    box.id = line.wrong.anchor;
    box.tabIndex = -1;
    box.append(make('span', {className: 'note', textContent: line.wrong.text}));
  }
  return box;
}

function foldedBox(lines, from, redraw) {
  const button = make('button', {type: 'button', className: 'folded', textContent: `⋯ ${labels.lines}: ${lines.length}`});
  button.addEventListener('click', () => redraw(button, lines.map((line, i) => lineBox(line, from + i))));
  return button;
}

/** Runs of lines far from every wrong one; undefined if no line is wrong. */
function farFromWrong(lines) {
  const wrong = lines.flatMap((line, index) => line.wrong ? [index] : []);
  return wrong.length === 0 ? undefined : lines.map((line, index) => wrong.every(at => Math.abs(at - index) > context));
}

/** Lines without anything wrong near them are folded if some line is wrong. */
export function codeBox(lines, name) {
  const box = make('pre', {className: 'code', tabIndex: 0, role: 'group', ariaLabel: name});
  const far = farFromWrong(lines) ?? lines.map(() => false);
  // A line that stands for something missing has no number of its own.
  let number = 1;
  for (let from = 0; from < lines.length;) {
    let to = from;
    while (to < lines.length && far[to]) ++to;
    if (to - from >= leastFolded) {
      box.append(foldedBox(lines.slice(from, to), number, (button, boxes) => button.replaceWith(...boxes)));
    } else {
      to = Math.max(to, from + 1);
      lines.slice(from, to).forEach((line, i) => box.append(lineBox(line, line.missing ? 0 : number + i)));
    }
    number += lines.slice(from, to).filter(line => !line.missing).length;
    from = to;
  }
  return box;
}

export const textOfLines = lines => lines.map(textOf).join('\n');

/** A button that copies a text; nothing where the browser does not let a page do so. */
export function copyButton(text, what) {
  if (!navigator.clipboard) return '';
  const button = make('button', {type: 'button', className: 'copy', textContent: labels.copy, ariaLabel: `${labels.copy}: ${what}`});
  button.addEventListener('click', async () => {
    await navigator.clipboard.writeText(text);
    button.textContent = labels.copied;
    setTimeout(() => { button.textContent = labels.copy; }, 1500);
  });
  return button;
}
