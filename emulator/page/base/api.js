// Calls to the emulator's API.

import {api} from './paths.js';
import {labels, translated} from './texts.js';

export async function ask(path, options) {
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
export function ignoreErrors(promise) {
  promise.catch(() => {});
}
