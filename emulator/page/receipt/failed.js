// Why a receipt that was accepted came to nothing.

import {make} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {sentBox} from './marked.js';
import {fieldRows, markedLines} from './wrongfields.js';

export function failedBox(receipt) {
  const {fields, report: {error}} = receipt;
  const text = JSON.stringify(receipt.request);
  const lines = markedLines(text, fields);
  return [
    make('div', {className: 'verdict'}, make('h3', {textContent: labels.failedLater}),
      make('p', {className: 'words', lang: 'ru', textContent: `${error.type} ${error.code}: ${error.text}`}),
      fields.length > 0 ? make('ul', {}, ...fieldRows(fields, lines)) : ''),
    ...fields.length > 0 ? sentBox(lines, text) : []];
}
