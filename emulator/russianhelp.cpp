#include "emulator/russianhelp.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace {

constexpr std::pair<std::string_view, std::string_view> descriptions[] = {
    {"--help", "показать эту справку"},
    {"--version", "показать версию"},
    {"--port", "порт TCP на 127.0.0.1; 0 — любой свободный"},
    {"--config", "файл JSON с группами, пользователями, списками значений и сбоями"},
    {"--login", "логин пользователя"},
    {"--password", "пароль пользователя"},
    {"--password-file", "файл, в первой строке которого записан пароль"},
    {"--group", "код группы касс"},
    {"--db", "файл SQLite для состояния; без него состояние хранится в памяти"},
    {"--keep", "сколько последних документов хранить"},
    {"--faults", "файл JSON с массивом сбоев"},
    {"--waits", "сколько раз ответить «ещё не обработан», прежде чем сообщить результат"},
    {"--latency", "сколько секунд касса обрабатывает чек: S или MIN,MAX"},
    {"--queue-timeout", "через сколько секунд ожидания в очереди чек получит ошибку"},
    {"--pace", "отклонять запросы состояния чаще одного в секунду на каждую кассу группы"},
    {"--revision", "чьи правила действуют: редакции описания 2025-12 (обычно) или 2023-05 (с --strict)"},
    {"--strict", "отклонять то, что сервис принимает вопреки своему описанию"},
    {"--token-ttl", "срок действия токена в секундах"},
    {"--allow-host", "ещё одно имя, разрешённое в заголовке Host"},
    {"--tls-cert", "файл PEM с цепочкой сертификатов; включает TLS"},
    {"--tls-key", "файл PEM с ключом к --tls-cert"},
};

} // namespace

void helpInRussian(CLI::App& app)
{
    app.description("fremulator: эмулятор облачного сервиса фискализации на этом компьютере.\n"
                    "Пример: fremulator --port 8080 --login shop --password secret --group shop_1");
    for (const auto& [name, text] : descriptions) {
        if (CLI::Option* option = app.get_option_no_throw(std::string(name)))
            option->description(std::string(text))->group("Параметры");
    }
    app.get_formatter()->label("Usage", "Запуск");
    app.get_formatter()->label("OPTIONS", "ПАРАМЕТРЫ");
}

bool wantsRussian()
{
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return std::string_view(value).starts_with("ru");
    }
    return false;
}
