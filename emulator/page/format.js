// Amounts and times as people write them.

import {language} from './texts.js';

export const money = value => Number(value).toFixed(2);
export const timeOf = iso => new Date(iso).toLocaleTimeString(language);
