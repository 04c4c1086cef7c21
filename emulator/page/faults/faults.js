// The faults in force, and ready-made ones.

import {ask} from '../base/api.js';
import {byId, make} from '../base/dom.js';
import {labels} from '../base/texts.js';
import {phaseOf} from '../wire/wire.js';
import {effectNamed, startFaultForm} from './faultform.js';

/** Sends a change and shows its error, if any, beside the form. */
async function change(path, options) {
  byId('fault-error').textContent = '';
  try {
    await ask(path, options);
    await showFaults();
  } catch (error) {
    byId('fault-error').textContent = error.message;
  }
}

export const addFault = fault => change('faults', {method: 'POST', body: JSON.stringify(fault)});

function matchText(match) {
  const parts = [match.login, match.group, match.external_id].filter(Boolean);
  if (match.after) parts.push(`${labels.after}: ${match.after}`);
  if (match.every) parts.push(`${labels.every}: ${match.every}`);
  return parts.join(', ');
}

function parameterText(fault) {
  const effect = effectNamed(fault.effect);
  if (!effect?.parameter) return '';
  const code = effect.types ? ` ${fault.code}` : '';
  return ` (${fault[effect.parameter]}${code})`;
}

function faultRow(fault) {
  const what = fault.name || `${labels[fault.endpoint]}: ${labels.effects[fault.effect] || fault.effect}${parameterText(fault)}`;
  const where = matchText(fault.match);
  const hits = `${labels.hits}: ${fault.hits}` + (fault.match.next ? `/${fault.match.next}` : '');
  const verb = fault.spent ? labels.remove : labels.switchOff;
  const remove = make('button', {type: 'button', textContent: verb, ariaLabel: `${verb}: ${what}`});
  remove.dataset.fault = fault.id;
  remove.addEventListener('click', async () => {
    await change('faults/' + fault.id, {method: 'DELETE'});
    byId('in-force').focus();
  });
  return make('li', {className: fault.spent ? 'spent' : ''},
    make('div', {}, make('span', {className: 'what', textContent: what}),
      make('small', {textContent: [phaseOf(fault), where, hits, fault.spent ? labels.spent : ''].filter(Boolean).join('; ')})),
    remove);
}

export async function showFaults() {
  const {faults} = await ask('faults');
  byId('no-faults').hidden = faults.length > 0;
  const focused = document.activeElement.dataset.fault;
  byId('fault-list').replaceChildren(...faults.map(faultRow));
  if (focused) byId('fault-list').querySelector(`button[data-fault="${focused}"]`)?.focus();
  const active = faults.filter(one => !one.spent);
  byId('fault-count').textContent = active.length || '';
  for (const button of byId('presets').children) showPreset(button, active);
}

const presets = {
  preset_lost: {endpoint: 'sell', effect: 'close', phase: 'after'},
  preset_down: {endpoint: 'sell', effect: 'html', status: 502, phase: 'before'},
  preset_silent: {endpoint: 'sell', effect: 'silent', phase: 'before'},
  preset_driver: {endpoint: 'sell', effect: 'fail', type: 'driver'},
  preset_token: {endpoint: 'token', effect: 'old-token', milliseconds: 0}
};

/** The active fault that the preset would set. */
const setBy = (preset, active) => active.find(fault => Object.keys(fault.match).join() === 'next' && fault.match.next === 1 &&
  Object.entries(preset).every(([key, value]) => fault[key] === value));

function showPreset(button, active) {
  const fault = setBy(presets[button.dataset.preset], active);
  button.setAttribute('aria-pressed', String(Boolean(fault)));
  button.dataset.active = fault?.id ?? '';
}

function showPresets() {
  byId('presets').replaceChildren(...Object.entries(presets).map(([name, fault]) => {
    const button = make('button', {type: 'button', ariaPressed: 'false'}, make('span', {textContent: labels[name]}),
      make('span', {className: 'on', textContent: labels.on}));
    button.dataset.preset = name;
    button.addEventListener('click', () => button.dataset.active
      ? change('faults/' + button.dataset.active, {method: 'DELETE'})
      : addFault({name: labels[name], ...fault, match: {next: 1}}));
    return button;
  }));
}

export function startFaults(effects) {
  showPresets();
  startFaultForm(effects, addFault);
}
