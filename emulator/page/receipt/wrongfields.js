// The wrong fields of a refused receipt, in the lines of its body.

import {labels} from '../base/texts.js';
import {jsonLines} from '../code/json.js';
import {fieldRow} from './marked.js';
import {ruleText} from './rules.js';

const parentOf = field => field.replace(/(\.[^.[]+|\[\d+\])$/, '');
const nameOf = field => field.slice(parentOf(field).length).replace(/^\./, '') || field;

/** A line in place of a missing key: before the end of the object that lacks it. */
function missingLine(lines, field) {
  const parent = field.includes('.') ? parentOf(field) : '';
  const end = lines.findIndex(line => line.path === parent + '/');
  if (end < 0) return undefined;
  const line = {path: field, depth: lines[end].depth + 1, missing: true,
    parts: [{kind: 'key', text: JSON.stringify(nameOf(field))}, {kind: 'sign', text: ': '}, {kind: 'absent', text: labels.absent}]};
  lines.splice(end, 0, line);
  return line;
}

function nearest(lines, field) {
  for (let path = field; path; path = parentOf(path) === path ? '' : parentOf(path)) {
    const line = lines.find(one => one.path === path);
    if (line) return line;
  }
  return lines[0];
}

/** The lines of the body with the wrong ones marked; nothing if the body is not JSON. */
export function markedLines(body, fields) {
  const lines = jsonLines(body);
  if (!lines) return undefined;
  fields.forEach(({field, rule}, index) => {
    const line = lines.find(one => one.path === field) ?? missingLine(lines, field) ?? nearest(lines, field);
    const text = [line.wrong?.text, ruleText(rule)].filter(Boolean).join('; ');
    line.wrong = {anchor: line.wrong?.anchor ?? `wrong-${index}`, fields: [...line.wrong?.fields ?? [], field], text};
  });
  return lines;
}

/** What was sent in the field, as a short text. */
function valueOf(lines, field) {
  const line = lines?.find(one => one.path === field);
  if (!line || line.missing) return labels.absent;
  return line.parts.filter(one => one.kind !== 'key' && one.text !== ': ' && one.text !== ',').map(one => one.text).join('')
    .replace(/^([{[])$/, '$1…');
}

/** Rows for the wrong fields of `markedLines`, which are nothing if the body is not JSON. */
export function fieldRows(fields, lines) {
  return fields.map(({field, rule}) => fieldRow({field, value: valueOf(lines, field), rule: ruleText(rule),
    anchor: lines?.find(one => one.wrong?.fields.includes(field))?.wrong.anchor}));
}
