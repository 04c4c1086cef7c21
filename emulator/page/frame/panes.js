// Which pane is shown where there is no room for all.

import {byId} from '../base/dom.js';

export function showPane(name) {
  document.body.dataset.pane = name;
  for (const button of byId('panes').querySelectorAll('button'))
    button.setAttribute('aria-pressed', String(button.dataset.pane === name || name === 'opened' && button.dataset.pane === 'receipts'));
  scrollTo(0, 0);
}

export function startPanes() {
  showPane('receipts');
  for (const button of byId('panes').querySelectorAll('button'))
    button.addEventListener('click', () => showPane(button.dataset.pane));
}
