'use strict';

// The switchboard of faults.

let effects = [];

const chosenEffect = () => effects.find(one => one.effect === byId('effect').value);

function showEffects() {
  const endpoint = byId('endpoint').value;
  choose(byId('effect'), effects.filter(one => one.endpoints.includes(endpoint))
    .map(one => [one.effect, say.effects[one.effect] || one.effect]));
  for (const row of document.querySelectorAll('.of-group')) row.hidden = endpoint === 'token';
  showParameter();
}

function showParameter() {
  const effect = chosenEffect();
  const own = Boolean(effect.types);
  byId('parameter-row').hidden = !effect.parameter || own;
  for (const row of document.querySelectorAll('.of-fail')) row.hidden = !own;
  if (own) {
    choose(byId('type'), effect.types.map(one => [one.type, `${one.type}: ${say.types[one.type] || ''}`]));
    showFailCode();
  }
  const key = {token: 'token', sell: 'uuid', report: 'payload.fn_number'}[byId('endpoint').value];
  byId('parameter-label').textContent = say.parameters[effect.parameter] || effect.parameter;
  byId('parameter').type = effect.parameter === 'key' ? 'text' : 'number';
  byId('parameter').value = effect.parameter === 'key' ? key : effect.default ?? '';
  byId('phase').value = effect.phase;
}

function showFailCode() {
  byId('code').value = chosenEffect().types.find(one => one.type === byId('type').value).code;
}

/** Fields that are left empty are not sent: the API knows what is usual. */
function faultOfForm() {
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

/** Does what a button asks for; what goes wrong is said beside the form. */
async function attempt(path, options) {
  byId('fault-error').textContent = '';
  try {
    await ask(path, options);
    await showFaults();
  } catch (error) {
    byId('fault-error').textContent = error.message;
  }
}

const setFault = fault => attempt('faults', {method: 'POST', body: JSON.stringify(fault)});

function matchText(match) {
  const parts = [match.login, match.group, match.external_id].filter(Boolean);
  if (match.after) parts.push(`${say.after}: ${match.after}`);
  if (match.every) parts.push(`${say.every}: ${match.every}`);
  return parts.join(', ');
}

function parameterText(fault) {
  const effect = effects.find(one => one.effect === fault.effect);
  if (!effect?.parameter) return '';
  const code = effect.types ? ` ${fault.code}` : '';
  return ` (${fault[effect.parameter]}${code})`;
}

function faultRow(fault) {
  const what = fault.name || `${say[fault.endpoint]}: ${say.effects[fault.effect] || fault.effect}${parameterText(fault)}`;
  const phase = fault.phase === 'before' ? say.before : say.afterPhase;
  const where = matchText(fault.match);
  const remove = make('button', {type: 'button', textContent: say.remove, ariaLabel: `${say.remove}: ${what}`});
  remove.dataset.fault = fault.id;
  remove.addEventListener('click', async () => {
    await attempt('faults/' + fault.id, {method: 'DELETE'});
    byId('in-force').focus();
  });
  return make('li', {className: fault.spent ? 'spent' : ''},
    make('div', {}, make('span', {className: 'what', textContent: what}),
      make('small', {textContent: `${phase}${where ? '; ' + where : ''}; ${say.hits}: ${fault.hits}` +
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
    const button = make('button', {type: 'button', textContent: say[name]});
    button.addEventListener('click', () => setFault({name: say[name], ...fault}));
    return button;
  }));
}

async function startFaults() {
  choose(byId('endpoint'), ['sell', 'report', 'token'].map(name => [name, say[name]]));
  choose(byId('phase'), [['before', say.before], ['after', say.afterPhase]]);
  showPresets();
  effects = (await ask('effects')).effects;
  showEffects();
  byId('endpoint').addEventListener('change', showEffects);
  byId('effect').addEventListener('change', showParameter);
  byId('type').addEventListener('change', showFailCode);
  byId('fault').addEventListener('submit', event => { event.preventDefault(); setFault(faultOfForm()); });
}
