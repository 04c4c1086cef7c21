// Export of the receipts that the list shows.

import {byId, make} from '../base/dom.js';
import {moscowTime} from '../base/format.js';
import {shownReceipts} from './list.js';

const columns = {
  received_at_moscow: one => moscowTime(one.received_at),
  group: one => one.group,
  operation: one => one.operation,
  external_id: one => one.external_id,
  uuid: one => one.uuid ?? '',
  total: one => one.total ?? '',
  status: one => one.status,
  code: one => one.code ?? '',
  wrong_field: one => one.first_field?.field ?? '',
  requests: one => one.wire_requests
};

/** A spreadsheet would compute a text that begins like a formula. */
function cell(value) {
  const text = String(value);
  return `"${(/^[=+\-@\t\r]/.test(text) ? "'" + text : text).replaceAll('"', '""')}"`;
}

export function csvOf(receipts) {
  const rows = [Object.keys(columns), ...receipts.map(one => Object.values(columns).map(column => column(one)))];
  return '\uFEFF' + rows.map(row => row.map(cell).join(',') + '\r\n').join('');
}

export function startExport() {
  byId('export').addEventListener('click', () => {
    const href = URL.createObjectURL(new Blob([csvOf(shownReceipts())], {type: 'text/csv'}));
    make('a', {href, download: 'receipts.csv'}).click();
    setTimeout(() => URL.revokeObjectURL(href), 10000);
  });
}
