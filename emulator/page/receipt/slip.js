// A receipt as a printed slip.

import {make} from '../base/dom.js';
import {money} from '../base/format.js';
import {api} from '../base/paths.js';
import {labels} from '../base/texts.js';

/** In the names, 110 is a rate of 10 in a sum of 110. */
function rateOf(type) {
  const rate = Number(type.match(/^vat(\d+)$/)?.[1] ?? NaN);
  if (Number.isNaN(rate)) return type;
  return rate > 100 ? `${rate - 100}/${rate}` : `${rate}%`;
}

function vatName(type) {
  return type === 'none' ? labels.noVat : `${labels.vat} ${rateOf(type)}`;
}

function facts(pairs) {
  const list = make('dl');
  for (const [name, value] of pairs) {
    if (value !== undefined && value !== null && value !== '')
      list.append(make('dt', {textContent: name}), make('dd', {textContent: value}));
  }
  return list;
}

function line(item) {
  const supplier = item.supplier_info
    ? `${labels.supplier}: ${item.supplier_info.name || ''} ${item.supplier_info.inn || ''}` : '';
  const wide = textContent => textContent ? make('span', {className: 'name', textContent}) : '';
  return make('div', {className: 'line'},
    wide(item.name),
    make('span', {textContent: `${item.quantity} × ${money(item.price)}`}),
    make('span', {textContent: '= ' + money(item.sum)}),
    wide(item.vat ? vatName(item.vat.type) : ''),
    wide(supplier),
    wide(item.nomenclature_code ? `${labels.marking}: ${item.nomenclature_code}` : ''));
}

function outcome(receipt) {
  const payload = receipt.report.payload;
  if (!payload) {
    const error = receipt.report.error;
    const failed = receipt.status === 'fail';
    return [make('p', {className: 'stamp ' + receipt.status, textContent: failed ? labels.failed : labels.waiting}),
      failed ? make('p', {textContent: `${error.type} ${error.code}: ${error.text}`}) : ''];
  }
  return [
    facts([[labels.time, `${payload.receipt_datetime} ${labels.zone}`], [labels.shift, payload.shift_number],
      [labels.receiptNumber, payload.fiscal_receipt_number], [labels.register, payload.ecr_registration_number],
      [labels.storage, payload.fn_number], [labels.document, payload.fiscal_document_number],
      [labels.sign, payload.fiscal_document_attribute], [labels.site, payload.fns_site]]),
    make('div', {className: 'plate'},
      make('img', {id: 'qr', src: `${api}documents/${receipt.uuid}/qr.svg`, alt: `${labels.qr}: ${receipt.qr}`}))];
}

export function slip(receipt) {
  const body = receipt.request.receipt || receipt.request.correction;
  const client = body.client || {};
  return make('div', {className: 'paper'}, make('div', {className: 'slip'},
    make('p', {textContent: body.company.payment_address}),
    make('p', {textContent: `${labels.inn} ${body.company.inn}`}),
    body.company.sno ? make('p', {textContent: labels.taxation[body.company.sno] || body.company.sno}) : '',
    make('p', {className: 'operation', textContent: labels.operations[receipt.operation] || receipt.operation}),
    make('hr'), ...(body.items || []).map(line), body.items?.length ? make('hr') : '',
    make('div', {className: 'line total'}, make('span', {textContent: labels.total}),
      make('span', {textContent: '= ' + money(receipt.total)})),
    facts([...body.payments.map(payment => [labels.payments[payment.type], money(payment.sum)]),
      ...receipt.vats.map(({type, sum}) => [vatName(type), money(sum)]),
      [labels.buyer, [client.email, client.phone].filter(Boolean).join(', ')]]),
    make('hr'), ...outcome(receipt)));
}
