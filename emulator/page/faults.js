'use strict';

// The list of faults and the form to add one.

let effects = [];

const chosenEffect = () => effects.find(one => one.effect === byId('effect').value);

function showEffects() {
  const endpoint = byId('endpoint').value;
  setOptions(byId('effect'), effects.filter(one => one.endpoints.includes(endpoint))
    .map(one => [one.effect, labels.effects[one.effect] || one.effect]));
  for (const row of document.querySelectorAll('.of-group')) row.hidden = endpoint === 'token';
  showParameter();
}

function showParameter() {
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
function faultFromForm() {
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

const addFault = fault => change('faults', {method: 'POST', body: JSON.stringify(fault)});

function matchText(match) {
  const parts = [match.login, match.group, match.external_id].filter(Boolean);
  if (match.after) parts.push(`${labels.after}: ${match.after}`);
  if (match.every) parts.push(`${labels.every}: ${match.every}`);
  return parts.join(', ');
}

function parameterText(fault) {
  const effect = effects.find(one => one.effect === fault.effect);
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

async function showFaults() {
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

async function startFaults() {
  setOptions(byId('endpoint'), ['sell', 'report', 'token'].map(name => [name, labels[name]]));
  setOptions(byId('phase'), ['before', 'after'].map(phase => [phase, labels['phase_' + phase]]));
  showPresets();
  effects = (await ask('effects')).effects;
  showEffects();
  byId('endpoint').addEventListener('change', showEffects);
  byId('effect').addEventListener('change', showParameter);
  byId('type').addEventListener('change', showFailCode);
  byId('fault').addEventListener('submit', event => { event.preventDefault(); addFault(faultFromForm()); });
}
