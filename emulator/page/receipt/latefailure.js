// A receipt that was accepted and failed later, because of a field that only the register call lets pass.

import {money} from '../base/format.js';
import {labels} from '../base/texts.js';
import {vatIn} from './vat.js';

const kopeck = 0.01;
const rounding = 0.001;

function givenVatSums(body, path) {
  return (body.items ?? []).flatMap(({sum, vat}, index) => {
    if (vat?.sum === undefined || vat.sum === null) return [];
    const expected = vatIn(vat.type, sum);
    return [{field: `${path}.items[${index}].vat.sum`, isWrong: Math.abs(vat.sum - expected) > kopeck + rounding,
      rule: expected === undefined ? labels.vatSumOfUnknown : labels.vatSum(money(expected))}];
  });
}

/** How the service computes them is not known for certain. If none looks wrong, any may be. */
function wrongVatSums(body, path) {
  const given = givenVatSums(body, path);
  const wrong = given.filter(one => one.isWrong);
  return wrong.length > 0 ? wrong : given;
}

/** The wrong fields, each with its rule; none if the failure has another reason. */
export function lateFields({request, report}) {
  const {error} = report;
  if (!error) return [];
  const path = request.correction ? 'correction' : 'receipt';
  if (error.code === 2009 && error.type === 'agent' && /ИНН/.test(error.text))
    return [{field: `${path}.company.inn`, rule: labels.foreignInn}];
  return /сумма налога/.test(error.text) ? wrongVatSums(request[path], path) : [];
}
