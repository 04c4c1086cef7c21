// Every text of the page, in English and Russian.

const languages = ['en', 'ru'];
export const language = (navigator.language || 'en').toLowerCase().startsWith('ru') ? 'ru' : 'en';

const texts = {
  address: ['Address for clients', 'Адрес для подключения'],
  live: ['Live', 'На связи'],
  offline: ['Connection lost, reconnecting…', 'Связь потеряна, переподключение…'],

  notStarted: ['The emulator does not answer. Trying again…', 'Эмулятор не отвечает. Пробуем ещё раз…'],
  retry: ['Try now', 'Попробовать сейчас'],

  receipts: ['Receipts', 'Чеки'],
  zone: ['MSK', 'МСК'],
  theme: ['Colours', 'Оформление'],
  themes: {system: ['As the system', 'Как в системе'], light: ['Light', 'Светлое'], dark: ['Dark', 'Тёмное']},
  panes: ['Parts of the page', 'Разделы страницы'],

  search: ['Search by id, uuid or text', 'Поиск по id, uuid или тексту'],
  kind: ['Kind', 'Вид'],
  allKinds: ['All kinds', 'Все виды'],
  allGroups: ['All groups', 'Все группы'],
  status: ['Status', 'Состояние'],
  all: ['all', 'все'],
  none: ['No receipts yet. They appear here as they arrive.', 'Чеков пока нет. Новые появятся здесь сами.'],
  noneFound: ['Nothing found.', 'Ничего не найдено.'],
  byCurl: ['Send one from a terminal', 'Отправить чек из терминала'],
  yourPassword: ['the password', 'пароль'],
  noId: ['(no id)', '(без id)'],
  exportList: ['Export as CSV', 'Выгрузить в CSV'],
  clearQuestion: ['Delete all receipts?', 'Удалить все чеки?'],
  clearHint: ['Their calls are deleted too. This cannot be undone.', 'Вместе с ними удалятся и запросы. Вернуть их будет нельзя.'],
  clearYes: ['Delete all', 'Удалить все'],
  cancel: ['Cancel', 'Отмена'],
  arrived: ['New receipt', 'Новый чек'],
  clear: ['Delete all receipts', 'Удалить все чеки'],
  calls: ['Latest calls', 'Последние запросы'],
  exportCalls: ['Save as a recording', 'Сохранить как запись'],
  replaying: ['The emulator answers from a recording. Refused receipts appear here, and all calls under “Latest calls”.',
    'Эмулятор отвечает по записи. Здесь появятся чеки, в которых отказано, а в разделе «Последние запросы» — все запросы.'],
  requests: ['requests', 'запросов'],
  status_wait: ['waiting', 'в обработке'],
  status_done: ['done', 'готов'],
  status_fail: ['failed', 'ошибка'],
  status_refused: ['refused', 'отказ'],

  wrongFields: [count => count === 1 ? 'Refused: one field is wrong' : `Refused: ${count} fields are wrong`,
    count => count === 1 ? 'Отказ: ошибка в одном поле' : `Отказ: ошибки в полях (${count})`],
  refusedWith: [code => `Refused with code ${code}`, code => `Отказ, код ${code}`],
  byFault: ['Not registered because of a fault', 'Не зарегистрирован из-за сбоя'],
  notRegistered: ['Not registered', 'Не зарегистрирован'],
  failedLater: ['Accepted, but not registered', 'Принят, но не зарегистрирован'],
  absent: ['missing', 'нет в запросе'],
  sent: ['What was sent', 'Что было отправлено'],
  lines: ['lines', 'строк'],
  hints: {
    10: ['The header Token is missing, or the service never issued this token.', 'Заголовка Token нет, или сервис такой токен не выдавал.'],
    11: ['The token has expired. Request a new one and send the receipt again.', 'Срок действия токена истёк. Получите новый и отправьте чек ещё раз.'],
    14: ['The user is blocked.', 'Пользователь заблокирован.'],
    20: ['The group in the address does not belong to the login.', 'Группа в адресе не относится к этому логину.'],
    21: ['The group does not use this version of the protocol.', 'Группа не работает с этой версией протокола.'],
    31: ['The service does not know the operation in the address.', 'Операция в адресе сервису неизвестна.'],
    40: ['The body is not a JSON object.', 'Тело запроса — не объект JSON.'],
    41: ['The header Content-Type must be application/json; charset=utf-8.', 'Заголовок Content-Type должен быть application/json; charset=utf-8.']
  },
  places: {
    10: ['Token', 'Token'],
    11: ['Token', 'Token'],
    20: ['group in the address', 'группа в адресе'],
    21: ['group in the address', 'группа в адресе'],
    31: ['operation in the address', 'операция в адресе'],
    41: ['Content-Type', 'Content-Type']
  },

  opened: ['Receipt', 'Чек'],
  choose: ['Select a receipt from the list.', 'Выберите чек из списка.'],
  copy: ['Copy', 'Копировать'],
  copied: ['Copied', 'Скопировано'],
  head: ['headers', 'заголовки'],
  body: ['body', 'тело'],
  compare: ['Compare two tries side by side', 'Сравнить две попытки'],
  whichTry: ['Try', 'Попытка'],
  raw: ['On the wire', 'Обмен с сервисом'],
  earlier: ['Earlier calls', 'Более ранние запросы'],
  request: ['Request', 'Запрос'],
  answer: ['Answer', 'Ответ'],
  noAnswer: ['no answer', 'нет ответа'],
  notCalled: ['not called', 'не вызван'],
  code: ['code', 'код'],
  fault: ['fault', 'сбой'],
  token: ['token', 'токен'],
  sell: ['register', 'регистрация'],
  report: ['status', 'статус'],
  callback: ['callback', 'вызов callback_url'],
  unknown: ['unknown call', 'неизвестный запрос'],

  inn: ['INN', 'ИНН'],
  buyer: ['Buyer', 'Покупатель'],
  supplier: ['Supplier', 'Поставщик'],
  marking: ['Marking code', 'Код маркировки'],
  total: ['TOTAL', 'ИТОГ'],
  vat: ['VAT', 'НДС'],
  noVat: ['Without VAT', 'Без НДС'],
  waiting: ['Not processed yet', 'Ещё не обработан'],
  failed: ['Not registered', 'Не зарегистрирован'],
  time: ['Time', 'Время'],
  shift: ['Shift', 'Смена'],
  receiptNumber: ['Receipt in shift', 'Чек за смену'],
  register: ['Register (RN)', 'РН ККТ'],
  storage: ['Fiscal storage (FN)', 'ФН'],
  document: ['Document (FD)', 'ФД'],
  sign: ['Fiscal sign (FP)', 'ФП'],
  site: ['Tax service website', 'Сайт ФНС'],
  qr: ['QR code of the receipt', 'QR-код чека'],
  operations: {
    sell: ['SALE', 'ПРИХОД'],
    sell_refund: ['SALE REFUND', 'ВОЗВРАТ ПРИХОДА'],
    sell_correction: ['SALE CORRECTION', 'КОРРЕКЦИЯ ПРИХОДА'],
    buy: ['PURCHASE', 'РАСХОД'],
    buy_refund: ['PURCHASE REFUND', 'ВОЗВРАТ РАСХОДА'],
    buy_correction: ['PURCHASE CORRECTION', 'КОРРЕКЦИЯ РАСХОДА']
  },
  taxation: {
    osn: ['General taxation', 'ОСН'],
    usn_income: ['Simplified taxation, income', 'УСН доход'],
    usn_income_outcome: ['Simplified taxation, income less expenses', 'УСН доход − расход'],
    envd: ['Imputed income tax', 'ЕНВД'],
    esn: ['Agricultural tax', 'ЕСХН'],
    patent: ['Patent', 'Патент']
  },
  payments: {
    0: ['cash', 'наличными'],
    1: ['card', 'безналичными'],
    2: ['advance', 'аванс'],
    3: ['credit', 'кредит'],
    4: ['other', 'иная форма'],
    5: ['type 5', 'тип 5'],
    6: ['type 6', 'тип 6'],
    7: ['type 7', 'тип 7'],
    8: ['type 8', 'тип 8'],
    9: ['type 9', 'тип 9']
  },

  faults: ['Faults', 'Сбои'],
  presetsHint: ['For the next call only', 'Сработает на следующем запросе'],
  on: ['on', 'вкл.'],
  spent: ['used up', 'исчерпан'],
  preset_lost: ['Registered, but the answer was lost', 'Чек зарегистрирован, но ответ потерян'],
  preset_down: ['502 from a proxy, nothing registered', '502 от прокси, чек не зарегистрирован'],
  preset_silent: ['The service does not answer', 'Сервис не отвечает'],
  preset_driver: ['The register rejects the receipt', 'Касса отклоняет чек'],
  preset_token: ['The token expires at once', 'Токен сразу истекает'],
  inForce: ['Active faults', 'Включённые сбои'],
  noFaults: ['None.', 'Сбоев нет.'],
  hits: ['hits', 'сработал'],
  switchOff: ['Switch off', 'Выключить'],
  remove: ['Remove', 'Убрать'],
  ownFault: ['A fault of your own', 'Свой сбой'],
  endpoint: ['Call', 'Запрос'],
  effect: ['Effect', 'Что произойдёт'],
  failType: ['Type of failure', 'Вид отказа'],
  failCode: ['Error code', 'Код ошибки'],
  phase: ['When', 'Когда'],
  sellPhases: {
    before: ['nothing is registered', 'чек не регистрируется'],
    after: ['registered, then the answer is spoiled', 'чек зарегистрирован, затем ответ испорчен']
  },
  phases: {
    before: ['the call is not carried out', 'запрос не выполняется'],
    after: ['carried out, then the answer is spoiled', 'запрос выполнен, затем ответ испорчен']
  },
  next: ['Hit how many (0: all)', 'Сколько раз (0 — всегда)'],
  after: ['Skip first N', 'Пропустить первые N'],
  every: ['Every Nth call', 'Каждый N-й запрос'],
  login: ['Login', 'Логин'],
  group: ['Group', 'Группа'],
  pattern: ['external_id (* and ?)', 'external_id (* и ?)'],
  set: ['Switch on', 'Включить'],
  effects: {
    error: ['error code of the service', 'код ошибки сервиса'],
    html: ['HTML page', 'страница HTML'],
    empty: ['empty body', 'пустое тело ответа'],
    truncated: ['half of the body', 'половина тела ответа'],
    'not-json': ['not JSON', 'не JSON'],
    'wrong-length': ['wrong Content-Length', 'неверный Content-Length'],
    drip: ['byte by byte', 'по одному байту'],
    delay: ['delayed answer', 'ответ с задержкой'],
    silent: ['no answer, connection stays open', 'нет ответа, соединение остаётся открытым'],
    close: ['connection closed without an answer', 'соединение закрывается без ответа'],
    'reset-before': ['TCP reset, no answer', 'сброс TCP без ответа'],
    'reset-during': ['TCP reset in the middle of the answer', 'сброс TCP посреди ответа'],
    'reset-after': ['TCP reset after the answer', 'сброс TCP после ответа'],
    'other-document': ['answer for another document', 'ответ по другому документу'],
    'old-token': ['token that expires early', 'токен с коротким сроком'],
    'without-key': ['missing key', 'в ответе нет ключа'],
    fail: ['the document fails', 'чек отклонён'],
    never: ['the document is never processed', 'чек никогда не будет готов']
  },
  parameters: {
    code: ['Error code', 'Код ошибки'],
    status: ['HTTP status', 'Статус HTTP'],
    bytes: ['Extra bytes', 'Лишних байтов'],
    milliseconds: ['Milliseconds', 'Миллисекунд'],
    key: ['Key, such as payload.fn_number', 'Ключ, например payload.fn_number']
  },
  types: {
    driver: ['rejected by the register', 'отклонён кассой'],
    agent: ['rejected before it reached the register', 'не дошёл до кассы'],
    timeout: ['too long in the queue', 'слишком долго в очереди'],
    system: ['error of the service', 'ошибка сервиса'],
    unknown: ['unknown error', 'неизвестная ошибка']
  }
};

function inLanguage(node) {
  if (Array.isArray(node)) return node[languages.indexOf(language)];
  return Object.fromEntries(Object.entries(node).map(([key, value]) => [key, inLanguage(value)]));
}

export const labels = inLanguage(texts);
const labelOfField = key => labels.parameters[key] || labels[key] || key;

// The API's error messages are in English. Those that the page can cause are translated.
const translations = language === 'en' ? [] : [
  [/^(?:fault|match)\.(\w+) must be a whole number from (\S+) to (\S+)$/,
    (key, low, high) => `«${labelOfField(key)}»: введите целое число от ${low} до ${high}`],
  [/^fault\.bytes must not be 0/, () => '«Лишних байтов»: 0 дал бы верную длину, введите другое число'],
  [/^fault\.key must name/, () => 'Укажите ключ, которого не должно быть в ответе, например payload.fn_number'],
  [/^effect (\S+) of sell needs phase after/,
    effect => `«${labels.effects[effect]}»: возможно только после выполнения запроса`],
  [/^document not found/, () => 'Такого чека нет: он удалён или его не было'],
  [/^refusal not found/, () => 'Этого отказа уже нет: чек зарегистрирован или удалён'],
  [/^fault not found/, () => 'Этот сбой уже убран']
];

const callbackFailures = language === 'en' ? [[/^not called: (.*)$/, reason => reason]] : [
  [/^not called: callback_url is not.*$/, () => 'callback_url — не адрес http этого компьютера'],
  [/^not called: too many.*$/, () => 'слишком много вызовов ждут очереди'],
  [/^cannot connect: (.*)$/, reason => `не удалось подключиться: ${reason}`],
  [/^cannot send: (.*)$/, reason => `не удалось отправить: ${reason}`],
  [/^no valid answer: no answer within (\d+) ms$/, time => `нет ответа за ${time} мс`],
  [/^no valid answer: (.*)$/, reason => `неверный ответ: ${reason}`]
];

function byTable(table, message) {
  for (const [pattern, translate] of table) {
    const match = message.match(pattern);
    if (match) return translate(...match.slice(1));
  }
  return message;
}

export const translated = message => byTable(translations, message);
export const callbackFailure = message => byTable(callbackFailures, message);
