// Light, dark, or as the system has it.

import {byId, make} from '../base/dom.js';
import {labels} from '../base/texts.js';

const signs = {system: '◐', light: '☀', dark: '☾'};
const themes = Object.keys(signs);
const key = 'theme';

function stored() {
  try {
    return localStorage.getItem(key);
  } catch {
    // Without storage, the choice lasts as long as the page.
    return null;
  }
}

function show(theme) {
  document.documentElement.dataset.theme = theme;
  byId('theme').replaceChildren(make('span', {ariaHidden: 'true', textContent: signs[theme]}),
    make('span', {className: 'theme-name', textContent: ' ' + labels.themes[theme]}));
  byId('theme').ariaLabel = `${labels.theme}: ${labels.themes[theme]}`;
}

export function startTheme() {
  show(themes.includes(stored()) ? stored() : 'system');
  byId('theme').addEventListener('click', () => {
    const next = themes[(themes.indexOf(document.documentElement.dataset.theme) + 1) % themes.length];
    show(next);
    try {
      localStorage.setItem(key, next);
    } catch {
      // As above.
    }
  });
}
