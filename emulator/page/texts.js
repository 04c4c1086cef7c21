'use strict';

const texts = {
  en: {
    address: 'Point the client at', receipts: 'Receipts', search: 'Search by id, uuid or text',
    none: 'Nothing yet. Receipts appear here as they arrive.', noneFound: 'Nothing found.',
    clear: 'Forget all receipts', calls: 'Latest calls', opened: 'Receipt', choose: 'Choose a receipt in the list.',
    faults: 'Misbehave', ownFault: 'A fault of your own', endpoint: 'Call', effect: 'What happens', phase: 'Receipt or token',
    login: 'Login', group: 'Group', pattern: 'external_id (* and ?)', next: 'How many calls (0: all)',
    after: 'Let go free first', every: 'Every Nth call', set: 'Switch on', failType: 'Kind of failure', failCode: 'Its code',
    inForce: 'Switched on', noFaults: 'Nothing: the service behaves.', remove: 'Remove', hits: 'hits', code: 'code',
    live: 'Live', offline: 'Connection lost, trying again…', arrived: 'Receipt', requests: 'requests',
    before: 'not registered', afterPhase: 'registered, the answer suffers',
    token: 'token', sell: 'register', report: 'status', unknown: 'unknown call', earlier: 'Earlier ones', site: 'Tax service', request: 'Request', answer: 'Answer', noAnswer: 'no answer',
    raw: 'On the wire', fault: 'fault', inn: 'INN', buyer: 'Buyer', total: 'TOTAL', vat: 'VAT', noVat: 'Without VAT', waiting: 'Not processed yet',
    failed: 'Not registered', shift: 'Shift', receiptNumber: 'Receipt in shift', document: 'Document (FD)',
    sign: 'Fiscal sign (FP)', storage: 'Fiscal storage (FN)', register: 'Register (RN)', time: 'Time', link: 'Link',
    qr: 'QR code of the receipt', supplier: 'Supplier', marking: 'Marking code',
    status_wait: 'waiting', status_done: 'done', status_fail: 'failed',
    operations: {sell: 'SALE', sell_refund: 'REFUND OF A SALE', sell_correction: 'CORRECTION OF A SALE', buy: 'PURCHASE',
      buy_refund: 'REFUND OF A PURCHASE', buy_correction: 'CORRECTION OF A PURCHASE'},
    taxation: {osn: 'General taxation', usn_income: 'Simplified, income', usn_income_outcome: 'Simplified, income less outcome',
      envd: 'Imputed income', esn: 'Agricultural', patent: 'Patent'},
    types: {driver: 'the register refuses', agent: 'the agent before it', timeout: 'too long in the queue',
      system: 'the service', unknown: 'not known'},
    refusals: [],
    payments: ['cash', 'card', 'advance', 'credit', 'other', 'type 5', 'type 6', 'type 7', 'type 8', 'type 9'],
    preset_lost: 'Registered, but the answer was lost', preset_silent: 'The service does not answer',
    preset_down: '502 from a proxy, nothing registered', preset_driver: 'The register refuses the receipt',
    preset_token: 'The token expires at once',
    effects: {
      error: 'error code of the service', html: 'HTML page', empty: 'empty body', truncated: 'half of the body',
      'not-json': 'not JSON', 'wrong-length': 'wrong Content-Length', drip: 'byte by byte', delay: 'late',
      silent: 'no answer, connection open', close: 'closed without an answer', 'reset-before': 'TCP reset, no answer',
      'reset-during': 'TCP reset amid the answer', 'reset-after': 'TCP reset after the answer',
      'other-document': 'another document', 'old-token': 'old token', 'without-key': 'key left out',
      fail: 'the register fails', never: 'never done'
    },
    parameters: {
      code: 'Error code', status: 'HTTP status', bytes: 'Bytes too many', milliseconds: 'Milliseconds',
      key: 'Key, such as payload.fn_number'
    }
  },
  ru: {
    address: 'Адрес для клиента', receipts: 'Чеки', search: 'Поиск по id, uuid или тексту',
    none: 'Пока ничего нет. Чеки появляются здесь сами.', noneFound: 'Ничего не найдено.',
    clear: 'Забыть все чеки', calls: 'Последние вызовы', opened: 'Чек', choose: 'Выберите чек в списке.',
    faults: 'Неисправности', ownFault: 'Своя неисправность', endpoint: 'Вызов', effect: 'Что происходит', phase: 'Чек или токен',
    login: 'Логин', group: 'Группа', pattern: 'external_id (* и ?)', next: 'Сколько вызовов (0: все)',
    after: 'Сначала пропустить', every: 'Каждый N-й вызов', set: 'Включить', failType: 'Вид отказа', failCode: 'Его код',
    inForce: 'Включено', noFaults: 'Ничего: сервис исправен.', remove: 'Убрать', hits: 'сработала', code: 'код', live: 'На связи', offline: 'Связь потеряна, пробуем снова…', arrived: 'Чек',
    requests: 'запросов', before: 'не регистрируется', afterPhase: 'регистрируется, страдает ответ', earlier: 'Более ранние',
    token: 'токен', sell: 'регистрация', report: 'состояние', unknown: 'неизвестный вызов', site: 'Сайт ФНС', request: 'Запрос', answer: 'Ответ', noAnswer: 'ответа нет',
    raw: 'В сети', fault: 'неисправность', inn: 'ИНН', buyer: 'Покупатель', total: 'ИТОГ', vat: 'НДС', noVat: 'Без НДС',
    waiting: 'Ещё не обработан', failed: 'Не зарегистрирован', shift: 'Смена', receiptNumber: 'Чек за смену',
    document: 'ФД', sign: 'ФП', storage: 'ФН', register: 'РН ККТ', time: 'Время', link: 'Ссылка',
    qr: 'QR-код чека', supplier: 'Поставщик', marking: 'Код маркировки',
    status_wait: 'ожидает', status_done: 'готов', status_fail: 'отказ',
    operations: {sell: 'ПРИХОД', sell_refund: 'ВОЗВРАТ ПРИХОДА', sell_correction: 'КОРРЕКЦИЯ ПРИХОДА', buy: 'РАСХОД',
      buy_refund: 'ВОЗВРАТ РАСХОДА', buy_correction: 'КОРРЕКЦИЯ РАСХОДА'},
    taxation: {osn: 'ОСН', usn_income: 'УСН доход', usn_income_outcome: 'УСН доход − расход', envd: 'ЕНВД', esn: 'ЕСХН',
      patent: 'Патент'},
    types: {driver: 'отказ кассы', agent: 'отказ агента перед ней', timeout: 'слишком долго в очереди', system: 'отказ сервиса',
      unknown: 'неизвестно'},
    refusals: [
      [/^(?:fault|match)\.(\w+) must be a whole number from (\S+) to (\S+)$/,
        (key, low, high) => `«${nameOfField(key)}»: нужно целое число от ${low} до ${high}`],
      [/^fault\.bytes must not be 0/, () => '«Лишних байтов»: 0 был бы верной длиной'],
      [/^fault\.key must name/, () => 'Назовите ключ, которого не будет, например payload.fn_number'],
      [/^effect (\S+) of sell needs phase after/,
        effect => `«${texts.ru.effects[effect]}» возможно, только если чек регистрируется`],
      [/^document not found/, () => 'Такого чека нет: он забыт или его не было'],
      [/^fault not found/, () => 'Такой неисправности уже нет']
    ],
    payments: ['наличными', 'безналичными', 'аванс', 'кредит', 'иная форма', 'тип 5', 'тип 6', 'тип 7', 'тип 8', 'тип 9'],
    preset_lost: 'Зарегистрирован, но ответ потерян', preset_silent: 'Сервис не отвечает',
    preset_down: '502 от прокси, не зарегистрирован', preset_driver: 'Касса отклоняет чек',
    preset_token: 'Токен сразу истекает',
    effects: {
      error: 'код ошибки сервиса', html: 'страница HTML', empty: 'пустое тело', truncated: 'половина тела',
      'not-json': 'не JSON', 'wrong-length': 'неверный Content-Length', drip: 'по одному байту', delay: 'с задержкой',
      silent: 'нет ответа, соединение открыто', close: 'закрыто без ответа', 'reset-before': 'сброс TCP без ответа',
      'reset-during': 'сброс TCP посреди ответа', 'reset-after': 'сброс TCP после ответа',
      'other-document': 'другой документ', 'old-token': 'старый токен', 'without-key': 'нет ключа',
      fail: 'отказ кассы', never: 'никогда не готов'
    },
    parameters: {
      code: 'Код ошибки', status: 'Статус HTTP', bytes: 'Лишних байтов', milliseconds: 'Миллисекунд',
      key: 'Ключ, например payload.fn_number'
    }
  }
};

function nameOfField(key) {
  return {next: texts.ru.next, after: texts.ru.after, every: texts.ru.every}[key] ||
    texts.ru.parameters[key] || key;
}

const language = (navigator.language || 'en').toLowerCase().startsWith('ru') ? 'ru' : 'en';
const say = texts[language];
