#include "emulator/protocol/errors.h"

#include "emulator/values/identifiers.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace emulator {

namespace {

constexpr std::array table{
    ServiceError{0, 400, "unknown", "Неизвестная ошибка"},
    ServiceError{1, 400, "system", "Не удалось обработать чек"},
    ServiceError{10, 401, "system", "Токен не передан или неизвестен"},
    ServiceError{11, 401, "system", "Срок действия токена истёк"},
    ServiceError{12, 401, "system", "Неверный логин или пароль"},
    ServiceError{13, 400, "system", "Запрос токена не прошёл проверку"},
    ServiceError{14, 403, "system", "Пользователь заблокирован"},
    ServiceError{20, 401, "system", "Код группы не соответствует токену"},
    ServiceError{21, 401, "system", "Группа не поддерживает эту версию протокола"},
    ServiceError{30, 400, "system", "Документ с таким uuid не найден"},
    ServiceError{31, 400, "system", "Операция не поддерживается"},
    ServiceError{32, 400, "system", "Чек не прошёл проверку"},
    ServiceError{33, 400, "system", "Документ с таким external_id уже существует"},
    ServiceError{34, 200, "system", "Документ ещё не обработан, повторите запрос позже"},
    ServiceError{40, 400, "system", "Некорректный запрос"},
    ServiceError{41, 415, "system", "Некорректный Content-Type"},
    ServiceError{50, 500, "system", "Внутренняя ошибка сервера"},
};

} // namespace

std::span<const ServiceError> serviceErrors()
{
    return table;
}

const ServiceError& serviceError(const int code)
{
    const auto* found = std::ranges::find(table, code, &ServiceError::code);
    if (found == table.end())
        throw std::out_of_range("the service has no error code " + std::to_string(code));
    return *found;
}

Json errorObject(const ServiceError& error, const std::string& details)
{
    std::string text(error.text);
    if (!details.empty())
        text += ": " + details;
    return {{"error_id", newUuid()}, {"code", error.code}, {"text", text}, {"type", error.type}};
}

} // namespace emulator
