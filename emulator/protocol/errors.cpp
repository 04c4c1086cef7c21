#include "emulator/protocol/errors.h"

#include "emulator/values/identifiers.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace emulator {

namespace {

using enum ErrorCode;

constexpr std::array table{
    ServiceError{Unknown, 400, "unknown", "Неизвестная ошибка"},
    ServiceError{ReceiptNotProcessed, 400, "system", "Не удалось обработать чек"},
    ServiceError{UnknownToken, 401, "system", "Токен не передан или неизвестен"},
    ServiceError{ExpiredToken, 401, "system", "Срок действия токена истёк"},
    ServiceError{WrongPassword, 401, "system", "Неверный логин или пароль"},
    ServiceError{InvalidTokenRequest, 400, "system", "Запрос токена не прошёл проверку"},
    ServiceError{BlockedUser, 403, "system", "Пользователь заблокирован"},
    ServiceError{ForeignGroup, 401, "system", "Код группы не соответствует токену"},
    ServiceError{UnsupportedProtocol, 401, "system", "Группа не поддерживает эту версию протокола"},
    ServiceError{UnknownDocument, 400, "system", "Документ с таким uuid не найден"},
    ServiceError{UnknownOperation, 400, "system", "Операция не поддерживается"},
    ServiceError{InvalidReceipt, 400, "system", "Чек не прошёл проверку"},
    ServiceError{DuplicateId, 400, "system", "Документ с таким external_id уже существует"},
    ServiceError{NotReady, 200, "system", "Документ ещё не обработан, повторите запрос позже"},
    ServiceError{InvalidRequest, 400, "system", "Некорректный запрос"},
    ServiceError{WrongContentType, 415, "system", "Некорректный Content-Type"},
    ServiceError{Internal, 500, "system", "Внутренняя ошибка сервера"},
};

} // namespace

std::span<const ServiceError> serviceErrors()
{
    return table;
}

const ServiceError& serviceError(ErrorCode code)
{
    const auto* found = std::ranges::find(table, code, &ServiceError::code);
    if (found == table.end())
        throw std::out_of_range("the service has no error code " + std::to_string(toNumber(code)));
    return *found;
}

Json errorObject(const ServiceError& error, const std::string& details)
{
    std::string text(error.text);
    if (!details.empty())
        text += ": " + details;
    return {{"error_id", newUuid()}, {"code", toNumber(error.code)}, {"text", text}, {"type", error.type}};
}

} // namespace emulator
