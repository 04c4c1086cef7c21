#include "atolonline/exceptionfactory.h"

#include "atolonline/exceptions.h"
#include "host/exceptions.h"

#include <algorithm>
#include <iterator>

namespace atolonline {

namespace {

constexpr int noCode = -1;

struct Row
{
    int code;
    void (*raise)(const char* message);
    const char* message;
};

template <typename E>
void raise(const char* message)
{
    throw E(QString::fromUtf8(message));
}

// The exceptions of this namespace have messages of their own.
template <typename E>
void raiseOwn(const char*)
{
    throw E();
}

constexpr Row rows[] = {
    {1, raise<FrWorkWithServiceException>, "Не удалось обработать полученный чек"},
    {2, raise<FrWorkWithServiceException>, "Некорректный ИНН организации"},
    {10, raise<FrWorkWithServiceException>, "Некорректный токен"},
    {11, raiseOwn<TokenExpired>, nullptr},
    {12, raise<FrWorkWithServiceException>, "Неверный логин или пароль"},
    {13, raise<FrWorkWithServiceException>, "Ошибка валидации входящего запроса"},
    {20, raise<FrWorkWithServiceException>, "Некорректный токен или код группы"},
    {21, raise<FrWorkWithServiceException>, "Код группы не поддерживает данную версию протокола"},
    {30, raise<FrDriverException>, "Документ с указанным идентификатором не найден"},
    {31, raise<FrCommandNotSupportException>, "Команда не поддерживается"},
    {32, raise<FrWorkWithServiceException>, "Некорректные данные в запросе"},
    {33, raiseOwn<DocumentExists>, nullptr},
    {34, raiseOwn<DocumentInProgress>, nullptr},
    {40, raise<FrNoConnectionException>, "Нет связи с ФР"},
    {41, raise<FrNoConnectionException>, "Нет связи с ФР"},
    {50, raise<FrNoConnectionException>, "Нет связи с ФР"},
};

} // namespace

void ExceptionFactory::throwException(int code, const QString& text)
{
    if (code == noCode)
        return;
    const auto row = std::ranges::find(rows, code, &Row::code);
    if (row == std::end(rows))
        throw FrWorkWithServiceException(text);
    row->raise(row->message);
}

} // namespace atolonline
