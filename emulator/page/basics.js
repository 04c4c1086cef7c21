'use strict';

const api = '/_emulator/';
const byId = id => document.getElementById(id);

function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children.filter(child => child !== null && child !== undefined && child !== ''));
  return element;
}

/** The emulator's refusals are English; what the page can bring about has its sentence in `texts`. */
function inOwnWords(message) {
  for (const [pattern, tell] of say.refusals) {
    const match = message.match(pattern);
    if (match) return tell(...match.slice(1));
  }
  return message;
}

async function ask(path, options) {
  let response;
  try {
    response = await fetch(api + path, options);
  } catch {
    throw new Error(say.offline);
  }
  const body = await response.json();
  if (!response.ok) throw new Error(inOwnWords(body.error || response.statusText));
  return body;
}

/** For what is done without being asked for: that the connection is lost is said in the head of the page. */
function quietly(promise) {
  promise.catch(() => {});
}

const money = value => Number(value).toFixed(2);
const timeOf = iso => new Date(iso).toLocaleTimeString(language);

function choose(select, pairs) {
  select.replaceChildren(...pairs.map(([value, textContent]) => make('option', {value, textContent})));
}
