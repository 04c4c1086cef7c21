'use strict';

const api = '/_emulator/';
const byId = id => document.getElementById(id);

function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children.filter(child => child !== null && child !== undefined && child !== ''));
  return element;
}

async function ask(path, options) {
  let response;
  try {
    response = await fetch(api + path, options);
  } catch {
    throw new Error(labels.offline);
  }
  const body = await response.json();
  if (!response.ok) throw new Error(translated(body.error || response.statusText));
  return body;
}

/** For background requests. A lost connection is shown at the top of the page anyway. */
function ignoreErrors(promise) {
  promise.catch(() => {});
}

const money = value => Number(value).toFixed(2);
const timeOf = iso => new Date(iso).toLocaleTimeString(language);

function setOptions(select, pairs) {
  select.replaceChildren(...pairs.map(([value, textContent]) => make('option', {value, textContent})));
}
