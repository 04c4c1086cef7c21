#include "host/log/ownlines.h"

#include <algorithm>
#include <iterator>

namespace hostruntime {

namespace {

// A line that a driver changes without changing it here is masked again.
constexpr const char* ownLines[] = {
    "Открытие чека %1",
    "Запись реквизита %1 (%2) в ФР",
    "Установка системы налогообложения для чека: %1",
    "Установка адреса покупателя: %1",
    "Добавление позиции в чек: %1",
    "Добавление оплаты: тип %1, сумма %2",
    "Расчет по чеку: (%1) %2",
    "Установка идентификатора документа %1",
    "%1. Получаем новый токен",
    "Документ еще не обработан",
    "Ошибка инициализации драйвера порта",
};

} // namespace

bool isOwnLine(QAnyStringView line)
{
    return std::any_of(std::begin(ownLines), std::end(ownLines),
        [&](const char* own) { return QAnyStringView::equal(line, own); });
}

} // namespace hostruntime
