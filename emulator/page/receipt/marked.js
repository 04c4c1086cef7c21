// The fields that are wrong, as a list and in the lines of what was sent.

import {byId, make} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {codeBox, copyButton} from '../code/code.js';

/** A field with what was sent in it and its rule; a click shows its line. */
export function fieldRow({field, value, rule, anchor}) {
  const button = make('button', {type: 'button', className: 'field', textContent: field});
  button.addEventListener('click', () => {
    const line = byId(anchor);
    line?.scrollIntoView({block: 'center'});
    line?.focus({preventScroll: true});
  });
  return make('li', {}, button, make('code', {className: 'sent', textContent: value}), make('span', {className: 'rule', textContent: rule}));
}

/** What was sent, with a heading; `head` is nothing where only the body matters. */
export function sentBox(lines, text, head) {
  return [
    make('div', {className: 'code-head'}, make('h3', {textContent: labels.sent}), copyButton(text, labels.sent)),
    head ? codeBox(head, `${labels.sent}: ${labels.head}`) : '',
    codeBox(lines, labels.sent)];
}
