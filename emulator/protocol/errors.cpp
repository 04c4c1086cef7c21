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
    ServiceError{UnknownToken, 401, "system", "Не распознан токен запроса", Keys::None},
    ServiceError{ExpiredToken, 401, "system", "Срок действия токена истёк", Keys::None},
    ServiceError{WrongPassword, 401, "system", "Неверный логин или пароль", Keys::None},
    ServiceError{InvalidTokenRequest, 400, "system", "Запрос токена не прошёл проверку", Keys::None},
    ServiceError{BlockedUser, 403, "system", "Пользователь заблокирован", Keys::None},
    ServiceError{ForeignGroup, 401, "system", "Код группы не соответствует токену", Keys::None},
    ServiceError{
        UnsupportedProtocol, 401, "system", "Группа не поддерживает эту версию протокола", Keys::None},
    ServiceError{UnknownDocument, 400, "system", "Документ с таким uuid не найден"},
    ServiceError{UnknownOperation, 400, "system", "Операция не поддерживается", Keys::None},
    ServiceError{InvalidReceipt, 400, "system", "Ошибка валидации входного чека"},
    ServiceError{DuplicateId, 400, "system", "В системе существует чек с таким external_id", Keys::Waiting},
    ServiceError{NotReady, 200, "system", "Состояние чека не найдено. Попробуйте позднее.", Keys::Waiting},
    ServiceError{InvalidRequest, 400, "system", "Некорректный запрос", Keys::None},
    ServiceError{WrongContentType, 415, "system", "Некорректный Content-Type", Keys::None},
    ServiceError{Internal, 500, "system", "Внутренняя ошибка сервера", Keys::None},
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

std::string invalidReceiptText(const std::string& fields)
{
    return std::string(serviceError(InvalidReceipt).text) + ". Ошибочные поля : " + fields;
}

std::string duplicateText(const std::string& externalId, const std::string& groupCode)
{
    return "В системе существует чек с external_id : \"" + externalId + "\" и group_code: \"" + groupCode +
           '"';
}

Json errorObject(const ServiceError& error, const std::string& text)
{
    return {{"error_id", newUuid()}, {"code", toNumber(error.code)},
        {"text", text.empty() ? std::string(error.text) : text}, {"type", error.type}};
}

} // namespace emulator
