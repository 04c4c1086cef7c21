// What is wrong in the first line or the headers of a refused call.

import {labels} from '../base/texts.js';
import {plainLines} from '../code/json.js';

const plain = text => ({kind: 'plain', text});

/** The request line with one part of its path apart. */
function inPath(lines, index) {
  const [line] = lines;
  const {text} = line.parts[0];
  const match = text.match(/^(\S+ \S*?\/possystem\/v4\/)([^/?\s]*)\/([^/?\s]*)(.*)$/);
  if (!match) return undefined;
  const [, before, group, operation, after] = match;
  const value = [group, operation][index];
  line.parts = index === 0 ? [plain(before), {kind: 'absent', text: group}, plain(`/${operation}${after}`)]
    : [plain(`${before}${group}/`), {kind: 'absent', text: operation}, plain(after)];
  return {line, value};
}

/** The header's line, or one in its place if it is missing. A token may be in the address instead. */
function inHeader(lines, name) {
  const [first] = lines;
  const found = lines.find(line => line.parts[0].text.toLowerCase().startsWith(name.toLowerCase() + ':'));
  if (found) return {line: found, value: found.parts[0].text.slice(name.length + 1).trim()};
  if (name === 'Token' && /[?&]token=/.test(first.parts[0].text)) return {line: first, value: '***'};
  const line = {depth: 0, missing: true, parts: [{kind: 'key', text: name + ': '}, {kind: 'absent', text: labels.absent}]};
  lines.push(line);
  return {line, value: labels.absent};
}

const places = {
  10: lines => inHeader(lines, 'Token'),
  11: lines => inHeader(lines, 'Token'),
  20: lines => inPath(lines, 0),
  21: lines => inPath(lines, 0),
  31: lines => inPath(lines, 1),
  41: lines => inHeader(lines, 'Content-Type')
};

/**
 * The lines of the head with the wrong one marked, and as for a wrong field: its name, what was sent and the rule.
 * Nothing if the code says nothing of the head.
 */
export function markedHead(head, code) {
  const lines = plainLines(head);
  const found = places[code]?.(lines);
  if (!found) return undefined;
  const field = labels.places[code];
  const rule = labels.hints[code];
  found.line.wrong = {anchor: 'wrong-head', fields: [field], text: rule};
  return {lines, field, value: found.value, rule};
}
