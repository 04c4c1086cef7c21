// The form for a fault of one's own.

import {byId, setOptions} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {phaseText} from '../wire/wire.js';

let effects = [];

export const effectNamed = name => effects.find(one => one.effect === name);
const chosenEffect = () => effectNamed(byId('effect').value);

export function showEffects() {
  const endpoint = byId('endpoint').value;
  setOptions(byId('effect'), effects.filter(one => one.endpoints.includes(endpoint))
    .map(one => [one.effect, labels.effects[one.effect] || one.effect]));
  setOptions(byId('phase'), ['before', 'after'].map(phase => [phase, phaseText(endpoint, phase)]));
  for (const row of document.querySelectorAll('.of-group')) row.hidden = endpoint === 'token';
  showParameter();
}

export function showParameter() {
  const effect = chosenEffect();
  const hasTypes = Boolean(effect.types);
  byId('parameter-row').hidden = !effect.parameter || hasTypes;
  for (const row of document.querySelectorAll('.of-fail')) row.hidden = !hasTypes;
  if (hasTypes) {
    setOptions(byId('type'), effect.types.map(one => [one.type, `${one.type}: ${labels.types[one.type] || ''}`]));
    showFailCode();
  }
  const key = {token: 'token', sell: 'uuid', report: 'payload.fn_number'}[byId('endpoint').value];
  byId('parameter-label').textContent = labels.parameters[effect.parameter] || effect.parameter;
  byId('parameter').type = effect.parameter === 'key' ? 'text' : 'number';
  byId('parameter').value = effect.parameter === 'key' ? key : effect.default ?? '';
  byId('phase').value = effect.phase;
}

function showFailCode() {
  byId('code').value = chosenEffect().types.find(one => one.type === byId('type').value).code;
}

/** Empty fields are not sent; the API has a default for them. */
export function faultFromForm() {
  const effect = chosenEffect();
  const fault = {endpoint: byId('endpoint').value, effect: effect.effect, phase: byId('phase').value, match: {}};
  const number = (key, field) => {
    if (byId(field).value !== '') fault[key] = Number(byId(field).value);
  };
  if (effect.types) {
    fault.type = byId('type').value;
    number('code', 'code');
  } else if (effect.parameter === 'key') {
    fault.key = byId('parameter').value;
  } else if (effect.parameter) {
    number(effect.parameter, 'parameter');
  }
  const match = {login: byId('login').value};
  if (fault.endpoint !== 'token') Object.assign(match, {group: byId('group').value, external_id: byId('pattern').value});
  for (const [key, value] of Object.entries(match)) {
    if (value) fault.match[key] = value;
  }
  if (Number(byId('next').value) > 0) fault.match.next = Number(byId('next').value);
  if (Number(byId('after').value) > 0) fault.match.after = Number(byId('after').value);
  if (Number(byId('every').value) > 1) fault.match.every = Number(byId('every').value);
  return fault;
}

/** `known` are the effects of the emulator. Calls `add` with each fault that is submitted. */
export function startFaultForm(known, add) {
  effects = known;
  setOptions(byId('endpoint'), ['sell', 'report', 'token'].map(name => [name, labels[name]]));
  showEffects();
  byId('endpoint').addEventListener('change', showEffects);
  byId('effect').addEventListener('change', showParameter);
  byId('type').addEventListener('change', showFailCode);
  byId('fault').addEventListener('submit', event => { event.preventDefault(); add(faultFromForm()); });
}
