// VAT rates.

export const vatRates = {vat10: '10%', vat110: '10/110', vat20: '20%', vat120: '20/120', vat0: '0%', vat5: '5%',
  vat105: '5/105', vat7: '7%', vat107: '7/107', vat22: '22%', vat122: '22/122'};

/** The tax included in a sum; nothing if the rate is not known, or there is none. */
export function vatIn(type, sum) {
  const rate = parseInt(vatRates[type], 10);
  return Number.isNaN(rate) ? undefined : sum * rate / (100 + rate);
}
