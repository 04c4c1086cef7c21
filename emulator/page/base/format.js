// Amounts and times as people write them.

import {labels, language} from './texts.js';

const amounts = new Intl.NumberFormat(language, {minimumFractionDigits: 2, maximumFractionDigits: 2});

export const money = value => Number.isFinite(value) ? amounts.format(value) : '–';

// In Moscow time, as in the service's answers and on slips.
const moscow = new Intl.DateTimeFormat('ru', {timeZone: 'Europe/Moscow', day: '2-digit', month: '2-digit', year: 'numeric',
  hour: '2-digit', minute: '2-digit', second: '2-digit'});

export const moscowTime = iso => moscow.format(new Date(iso)).replace(',', '');
export const dateAndTime = iso => `${moscowTime(iso)} ${labels.zone}`;
export const timeOf = iso => moscowTime(iso).split(' ')[1];
