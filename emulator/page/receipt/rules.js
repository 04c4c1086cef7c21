// The rules for fields. The service words them in Russian.

import {language} from '../base/texts.js';

const english = [
  [/^ожидается объект$/, () => 'must be an object'],
  [/^ожидается массив, элементов от (\d+) до (\d+)$/, (low, high) => `must be an array of ${low} to ${high} elements`],
  [/^ожидается строка длиной от (\d+) до (\d+) символов$/, (low, high) => `must be a text of ${low} to ${high} characters`],
  [/^ожидаются дата и время в формате (.*) или ISO 8601 с часовым поясом$/,
    format => `must be date and time as ${format}, or as ISO 8601 with a zone`],
  [/^ожидаются дата и время в формате (.*)$/, format => `must be date and time as ${format}`],
  [/^ожидается строка из 10 или 12 цифр$/, () => 'must be a text of 10 or 12 digits'],
  [/^ожидается телефон без пробелов/, () => 'must be a phone number without spaces: + and up to 18 characters, or up to 17'],
  [/^ожидается телефон/, () => 'must be a phone number: + and up to 18 digits, or up to 17 digits'],
  [/^ожидается число от (\S+) до (\S+), не более двух знаков после точки$/,
    (low, high) => `must be a number from ${low} to ${high} with at most two decimals`],
  [/^ожидается число больше 0, но не больше (\S+), не более трёх знаков после точки$/,
    high => `must be a number above 0, at most ${high}, with at most three decimals`],
  [/^ожидается число больше 0, но не больше (\S+), не более шести знаков после точки$/,
    high => `must be a number above 0, at most ${high}, with at most six decimals`],
  [/^ожидается целое число от (\S+) до (\S+)$/, (low, high) => `must be a whole number from ${low} to ${high}`],
  [/^ожидаются байты .* от (\d+) до (\d+)$/, (low, high) => `must be ${low} to ${high} bytes in hex, separated by spaces`],
  [/^ожидается код маркировки: .* от (\d+) до (\d+), текст GS1 до (\d+) символов или (\d+) символов с пачки табака$/,
    (low, high, gs1, tobacco) => `must be a marking code: ${low} to ${high} bytes in hex, separated by spaces, ` +
      `a GS1 text of up to ${gs1} characters, or the ${tobacco} characters of a tobacco packet`],
  [/^ожидается true или false$/, () => 'must be true or false'],
  [/^ожидается одно из значений: (.*)$/, values => `must be one of ${values}`],
  [/^ИНН не совпадает с ИНН группы$/, () => 'differs from the INN of the group'],
  [/^нужно заполнить email или phone$/, () => 'needs an email or a phone'],
  [/^обязательное поле, если internet — true$/, () => 'is required if internet is true'],
  [/^обязательное поле, если есть agent_info$/, () => 'is required with agent_info'],
  [/^ожидается сумма НДС по ставке: (\S+)$/, sum => `must be the VAT at this rate: ${sum}`],
  [/^обязательное поле$/, () => 'is required'],
  [/^число слишком маленькое$/, () => 'the number is too small'],
  [/^число слишком большое$/, () => 'the number is too big'],
  [/^слишком много знаков после точки$/, () => 'has too many decimals'],
  [/^ожидается число$/, () => 'must be a number'],
  [/^строка слишком короткая$/, () => 'the text is too short'],
  [/^строка слишком длинная$/, () => 'the text is too long'],
  [/^ожидается строка$/, () => 'must be a text'],
  [/^значение записано не по правилам$/, () => 'is not in the right form'],
  [/^такого значения нет в списке допустимых$/, () => 'is not one of the permitted values'],
  [/^слишком мало элементов$/, () => 'has too few elements'],
  [/^слишком много элементов$/, () => 'has too many elements'],
  [/^ожидается массив$/, () => 'must be an array'],
  [/^итог не равен сумме оплат$/, () => 'does not equal the sum of the payments'],
  [/^итог отличается от суммы позиций больше чем на 99 копеек$/, () => 'differs from the sum of the items by more than 99 kopecks']
];

/** The rule in the language of the page; as it is if its English is not known. */
export function ruleText(rule) {
  if (language === 'ru') return rule;
  for (const [pattern, translate] of english) {
    const match = rule.match(pattern);
    if (match) return translate(...match.slice(1));
  }
  return rule;
}
