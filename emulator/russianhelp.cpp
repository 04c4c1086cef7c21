#include "emulator/russianhelp.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <regex>
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
    {"--revision",
        "редакция описания сервиса, правила которой действуют: 2025-12 (по умолчанию) или 2023-05 (по "
        "умолчанию с --strict)"},
    {"--strict", "отклонять то, что сервис принимает вопреки своему описанию"},
    {"--token-ttl", "срок действия токена в секундах"},
    {"--allow-host", "ещё одно имя, разрешённое в заголовке Host"},
    {"--allow-callbacks", "вызывать callback_url готовых чеков, только на этом компьютере"},
    {"--replay", "отвечать по записи: файл HAR или строки JSON из /_emulator/recording"},
    {"--tls-cert", "файл PEM с цепочкой сертификатов; включает TLS"},
    {"--tls-key", "файл PEM с ключом к --tls-cert"},
};

// What the library says of wrong arguments. The wording differs a little from version to version.
constexpr std::pair<const char*, const char*> complaints[] = {
    {"The following arguments? (?:was|were) not expected: (.*)", "неизвестные параметры: $1"},
    {"(\\S+): must not be empty", "$1: значение не должно быть пустым"},
    {"(\\S+): Value (.*) not in range \\[?(\\S+) (?:to|-) ([^\\]]+)\\]?",
        "$1: значение $2 не в пределах от $3 до $4"},
    {"(\\S+): (.*) not in \\{(.*)\\}", "$1: значение $2 должно быть одним из: $3"},
    {"Could not convert: (\\S+) = ?(.*)", "$1: неверное значение $2"},
    {"(\\S+) excludes (\\S+)", "$1 нельзя указывать вместе с $2"},
    {"(\\S+) requires (\\S+)", "вместе с $1 нужно указать $2"},
    {"(\\S+): \\d+ required .* missing", "$1: не указано значение"},
    {"(\\S+): At Most (\\d+) required but received (\\d+)", "$1: значений указано $3, можно не больше $2"},
    {"(\\S+): At least (\\d+) required but received (\\d+)", "$1: значений указано $3, нужно не меньше $2"},
    {"(\\S+): (?:Should be true/false or a number|too many inputs for a flag)",
        "$1: параметр указывают без значения"},
};

std::string complaintInRussian(const CLI::App*, const CLI::Error& error)
{
    const std::string said = error.what();
    std::string text = "неверные параметры: " + said;
    for (const auto& [pattern, russian] : complaints) {
        if (const std::regex expression(pattern); std::regex_match(said, expression)) {
            text = std::regex_replace(said, expression, russian);
            break;
        }
    }
    return text + "\nСправка: fremulator --help\n";
}

} // namespace

void helpInRussian(CLI::App& app)
{
    app.description("fremulator: эмулятор облачного сервиса фискализации на этом компьютере.\n"
                    "Пример: fremulator --port 8080 --login shop --password secret --group shop_1");
    for (const auto& [name, text] : descriptions) {
        if (CLI::Option* option = app.get_option_no_throw(std::string(name)))
            option->description(std::string(text))->group("Параметры");
    }
    app.failure_message(complaintInRussian);
    app.get_formatter()->label("Usage", "Запуск");
    app.get_formatter()->label("OPTIONS", "ПАРАМЕТРЫ");
    app.get_formatter()->label("Excludes", "Нельзя вместе с");
    app.get_formatter()->label("Needs", "Только вместе с");
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
