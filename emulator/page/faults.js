// The faults in force, and ready-made ones.

import {ask} from './api.js';
import {byId, make} from './dom.js';
import {effectNamed, startFaultForm} from './faultform.js';
import {labels} from './texts.js';

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
  const phase = labels['phase_' + fault.phase];
  const where = matchText(fault.match);
  const remove = make('button', {type: 'button', textContent: labels.remove, ariaLabel: `${labels.remove}: ${what}`});
  remove.dataset.fault = fault.id;
  remove.addEventListener('click', async () => {
    await change('faults/' + fault.id, {method: 'DELETE'});
    byId('in-force').focus();
  });
  return make('li', {className: fault.spent ? 'spent' : ''},
    make('div', {}, make('span', {className: 'what', textContent: what}),
      make('small', {textContent: `${phase}${where ? '; ' + where : ''}; ${labels.hits}: ${fault.hits}` +
        (fault.match.next ? `/${fault.match.next}` : '')})),
    remove);
}

export async function showFaults() {
  const {faults} = await ask('faults');
  byId('no-faults').hidden = faults.length > 0;
  const focused = document.activeElement.dataset.fault;
  byId('fault-list').replaceChildren(...faults.map(faultRow));
  if (focused) byId('fault-list').querySelector(`button[data-fault="${focused}"]`)?.focus();
}

const presets = {
  preset_lost: {endpoint: 'sell', effect: 'close', phase: 'after', match: {next: 1}},
  preset_down: {endpoint: 'sell', effect: 'html', status: 502, phase: 'before', match: {next: 1}},
  preset_silent: {endpoint: 'sell', effect: 'silent', phase: 'before', match: {next: 1}},
  preset_driver: {endpoint: 'sell', effect: 'fail', type: 'driver', match: {next: 1}},
  preset_token: {endpoint: 'token', effect: 'old-token', milliseconds: 0, match: {next: 1}}
};

function showPresets() {
  byId('presets').replaceChildren(...Object.entries(presets).map(([name, fault]) => {
    const button = make('button', {type: 'button', textContent: labels[name]});
    button.addEventListener('click', () => addFault({name: labels[name], ...fault}));
    return button;
  }));
}

export async function startFaults() {
  showPresets();
  await startFaultForm(addFault);
}
