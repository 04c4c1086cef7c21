#include "emulator/protocol/token.h"
#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <regex>

using emulator::Json;
using namespace std::chrono_literals;

namespace {

// Answers in the shape in which the service gives them, key by key and in their order.
struct Recorded : RunningEmulator
{
    using RunningEmulator::call;
    using RunningEmulator::exchange;
    using RunningEmulator::get;
    using RunningEmulator::options;
    using RunningEmulator::passTime;
    using RunningEmulator::post;
    using RunningEmulator::report;
    using RunningEmulator::sell;
    using RunningEmulator::start;
    using RunningEmulator::takeToken;
    using RunningEmulator::tokenHeader;

    Recorded()
    {
        options.service.groups = {
            {.code = "group-1"}, {.code = "foreign"}, {.code = "other", .protocolRefused = true}};
        options.service.users = {{.login = "shop", .password = "secret", .groups = {"group-1", "other"}},
            {.login = "blocked", .password = "secret", .groups = {"group-1"}, .blocked = true},
            {.login = "v5", .password = "secret", .groups = {"group-1"}, .protocolRefused = true}};
    }

    RawClient::Answer login(const std::string& name, const std::string& password)
    {
        return post("/possystem/v4/getToken", {{"login", name}, {"pass", password}});
    }

    RawClient::Answer sellIn(const std::string& path, const std::string& token)
    {
        return exchange(postRequest("/possystem/v4/" + path, goodReceipt().dump(), token));
    }

    // A sale, some status calls, and the answer to the last of them.
    RawClient::Answer sellAndAsk(const Json& body = goodReceipt())
    {
        return report(sell(body).json()["uuid"]);
    }

    // A sale with headers of the test's own besides the token.
    RawClient::Answer sellWith(const std::string& headers, const std::string& path = "group-1/sell")
    {
        const std::string body = goodReceipt().dump();
        return exchange("POST /possystem/v4/" + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers +
                        "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    }

    void fail(const std::string& type)
    {
        EXPECT_EQ(
            post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "fail"}, {"type", type}}).status,
            200);
    }
};

// What differs from answer to answer, in words.
std::string withoutVariables(std::string text)
{
    const std::pair<const char*, const char*> variables[] = {
        {R"([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-8[0-9a-f]{3}-[0-9a-f]{12})", "UUID"},
        {R"("fiscal_document_attribute":[2-4][0-9]{9})", R"("fiscal_document_attribute":SIGN)"},
        {R"(127\.0\.0\.1:[0-9]+)", "HOST"},
        {R"("token":"[-_0-9A-Za-z]{128}")", R"("token":"TOKEN")"},
    };
    for (const auto& [pattern, word] : variables)
        text = std::regex_replace(text, std::regex(pattern), word);
    return text;
}

// The error object of a call, without what follows.
std::string error(int code, const std::string& text)
{
    return R"("error":{"error_id":"UUID","code":)" + std::to_string(code) + R"(,"text":")" + text +
           R"(","type":"system"})";
}

const std::string time3 = R"("timestamp":"01.03.2026 03:00:00"})";
const std::string accepted = R"({"uuid":"UUID","status":"wait","error":null,)" + time3;

// The status answer for a document that failed with this error.
std::string failed(const std::string& error)
{
    return R"({"uuid":"UUID","error":)" + error +
           R"(,"status":"fail","payload":null,"warnings":null,"timestamp":"01.03.2026 03:00:00",)"
           R"("group_code":"group-1","daemon_code":"fremulator","device_code":"KKT000001",)"
           R"("external_id":"id-1","callback_url":""})";
}

struct Row
{
    std::string rule;
    // d: described by the service; r: recorded; o: told by users; ?: inferred.
    char source;
    std::function<RawClient::Answer(Recorded&)> ask;
    int status;
    std::string answer;
};

const Row rows[] = {
    {"a token", 'd', [](Recorded& s) { return s.login("shop", "secret"); }, 200,
        R"({"error":null,"token":"TOKEN",)" + time3},
    {"code 10", 'r', [](Recorded& s) { return s.sellIn("group-1/sell", ""); }, 401,
        "{" + error(10, "Не распознан токен запроса") + "," + time3},
    {"code 11", 'r',
        [](Recorded& s) {
            s.passTime(24h);
            const auto answer = s.sellIn("group-1/sell", s.tokenHeader());
            s.passTime(-24h);
            return answer;
        },
        401, "{" + error(11, "Срок действия токена истёк") + R"(,"timestamp":"02.03.2026 03:00:00"})"},
    {"code 12", 'r', [](Recorded& s) { return s.login("shop", "wrong"); }, 401,
        "{" + error(12, "Неверный логин или пароль") + "," + time3},
    {"code 13", 'd', [](Recorded& s) { return s.login("", "secret"); }, 400,
        "{" + error(13, "Запрос токена не прошёл проверку") + "," + time3},
    {"code 14", 'd', [](Recorded& s) { return s.login("blocked", "secret"); }, 403,
        "{" + error(14, "Пользователь заблокирован") + "," + time3},
    {"code 20", 'r', [](Recorded& s) { return s.sellIn("foreign/sell", s.tokenHeader()); }, 401,
        "{" + error(20, "Код группы не соответствует токену") + "," + time3},
    {"code 21", 'r', [](Recorded& s) { return s.sellIn("other/sell", s.tokenHeader()); }, 401,
        "{" + error(21, "Группа не поддерживает эту версию протокола") + "," + time3},
    {"code 21 of an account", 'o', [](Recorded& s) { return s.login("v5", "secret"); }, 401,
        "{" + error(21, "Учётная запись относится к другой версии протокола") + "," + time3},
    {"code 30", 'd', [](Recorded& s) { return s.report("nothing"); }, 400,
        "{" + error(30, "Документ с таким uuid не найден") + R"(,"status":"fail","payload":null,)" + time3},
    {"code 31", 'r', [](Recorded& s) { return s.sellIn("group-1/give", s.tokenHeader()); }, 400,
        "{" + error(31, "Операция не поддерживается") + "," + time3},
    {"code 32 of a receipt", 'r',
        [](Recorded& s) {
            Json body = goodReceipt();
            body["receipt"]["total"] = -1;
            return s.sell(body);
        },
        400,
        "{" + error(32, "Ошибка валидации входного чека. Ошибочные поля : NumberTooSmall: #/receipt.total") +
            R"(,"status":"fail",)" + time3},
    {"code 32 of a login", 'r', [](Recorded& s) { return s.login("no login", "secret"); }, 400,
        "{" + error(32, "PatternMismatch: #/login") + R"(,"status":"fail",)" + time3},
    {"code 33", 'r',
        [](Recorded& s) {
            EXPECT_EQ(s.sell(goodReceipt("till-1")).status, 200);
            return s.sell(goodReceipt("till-1"));
        },
        400,
        R"({"uuid":"UUID","status":"wait",)" +
            error(33, R"(В системе существует чек с external_id : \"till-1\" и group_code: \"group-1\")") +
            "," + time3},
    {"code 34", 'r',
        [](Recorded& s) {
            s.options.service.waits = 1;
            s.start();
            s.takeToken();
            return s.sellAndAsk();
        },
        200,
        R"({"uuid":"UUID","status":"wait",)" + error(34, "Состояние чека не найдено. Попробуйте позднее.") +
            "," + time3},
    {"code 40", 'r',
        [](Recorded& s) {
            return s.exchange(postRequest("/possystem/v4/group-1/sell", "{", s.tokenHeader()));
        },
        400, "{" + error(40, "Некорректный запрос") + "," + time3},
    {"code 41", 'r',
        [](Recorded& s) {
            return s.call(
                "POST", "/possystem/v4/group-1/sell", s.tokenHeader() + "Content-Type: text/plain\r\n");
        },
        415, "{" + error(41, "Некорректный Content-Type") + "," + time3},
    {"code 50", 'r',
        [](Recorded& s) {
            EXPECT_EQ(s.post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "error"}}).status, 200);
            return s.sell(goodReceipt());
        },
        500, "{" + error(50, "Внутренняя ошибка сервера") + "," + time3},
    {"an accepted receipt", 'd', [](Recorded& s) { return s.sell(goodReceipt()); }, 200, accepted},
    {"a token asked for with GET", 'd',
        [](Recorded& s) { return s.get("/possystem/v4/getToken?login=shop&pass=secret"); }, 200,
        R"({"error":null,"token":"TOKEN",)" + time3},
    {"a token in the address", 'd',
        [](Recorded& s) {
            const std::string header = s.tokenHeader();
            const std::string token = header.substr(7, header.size() - 9);
            return s.sellIn("group-1/sell?token=" + token, "");
        },
        200, accepted},
    {"a content type without a charset", 'o',
        [](Recorded& s) { return s.sellWith(s.tokenHeader() + "Content-Type: application/json\r\n"); }, 200,
        accepted},
    {"no content type", 'o', [](Recorded& s) { return s.sellWith(s.tokenHeader()); }, 200, accepted},
    {"a slash at the end", 'o', [](Recorded& s) { return s.sellIn("group-1/sell/", s.tokenHeader()); }, 200,
        accepted},
    {"the id of another receipt", '?',
        [](Recorded& s) {
            EXPECT_EQ(s.sell(goodReceipt("till-1")).status, 200);
            return s.sell(changed(goodReceipt("till-1"), "/receipt/items/0/name", "Хлеб"));
        },
        400,
        R"({"uuid":"UUID","status":"wait",)" +
            error(33, R"(В системе существует чек с external_id : \"till-1\" и group_code: \"group-1\")") +
            "," + time3},
    {"a registered receipt, its time without seconds", 'r',
        [](Recorded& s) {
            s.passTime(59s);
            const auto answer = s.sellAndAsk();
            s.passTime(-59s);
            return answer;
        },
        200,
        R"({"uuid":"UUID","error":null,"status":"done","payload":{"total":150.5,"ofd_inn":"7700000099",)"
        R"("fns_site":"www.nalog.gov.ru","fn_number":"0000990700000001","shift_number":1,)"
        R"("receipt_datetime":"01.03.2026 03:00:00","fiscal_receipt_number":1,"fiscal_document_number":3,)"
        R"("ecr_registration_number":"0000123400000001","fiscal_document_attribute":SIGN,)"
        R"("ofd_receipt_url":"http://HOST/#UUID"},"warnings":null,"timestamp":"01.03.2026 03:00:59",)"
        R"("group_code":"group-1","daemon_code":"fremulator","device_code":"KKT000001","external_id":"id-1",)"
        R"("callback_url":""})"},
    {"a failed receipt", 'r',
        [](Recorded& s) {
            s.fail("agent");
            return s.sellAndAsk();
        },
        200, failed(R"({"code":2003,"text":"Агент не смог передать документ на кассу","type":"agent"})")},
    {"the taxpayer number of another group", 'r',
        [](Recorded& s) {
            s.options.service.groups.front().inn = "7700000001";
            s.start();
            s.takeToken();
            return s.sellAndAsk();
        },
        200, failed(R"({"code":2009,"text":"ИНН организации не совпадает с ИНН группы","type":"agent"})")},
    {"a wrong sum of VAT", 'r',
        [](Recorded& s) { return s.sellAndAsk(changed(goodReceipt(), "/receipt/items/0/vat/sum", 15.05)); },
        200, failed(R"({"code":502,"text":"Некорректная сумма налога","type":"driver"})")},
    {"payments that differ from the total", 'o',
        [](Recorded& s) {
            const Json body = changed(goodReceipt(), "/receipt/payments/0/sum", 200);
            auto answer = s.sellAndAsk(body);
            answer.body = answer.json()["payload"]["total"].dump();
            return answer;
        },
        200, "150.5"},
    {"an older site of the tax authority", 'r',
        [](Recorded& s) {
            s.options.service.fnsSite = "www.nalog.ru";
            s.start();
            s.takeToken();
            auto answer = s.sellAndAsk();
            answer.body = answer.json()["payload"]["fns_site"].dump();
            return answer;
        },
        200, R"("www.nalog.ru")"},
};

} // namespace

TEST_F(Recorded, AnswersHaveTheKeysAndTextsOfTheService)
{
    const emulator::ServiceOptions usual = options.service;
    for (const Row& row : rows) {
        options.service = usual;
        start();
        takeToken();
        const auto answer = row.ask(*this);
        EXPECT_EQ(answer.status, row.status) << row.rule;
        EXPECT_EQ(withoutVariables(answer.body), row.answer) << row.rule << " (" << row.source << ")";
    }
}

TEST_F(Recorded, CallbackAddressThatDoesNotMatchIsAWarning)
{
    start();
    takeToken();
    const auto warnings = [this](const std::string& id, const std::string& url) {
        Json body = goodReceipt(id);
        body["service"]["callback_url"] = url;
        return sellAndAsk(body).json()["warnings"];
    };
    EXPECT_EQ(warnings("1", "https://shop.example/done"), nullptr);
    EXPECT_EQ(warnings("2", ""), nullptr);
    EXPECT_TRUE(warnings("3", "shop.example/done").is_object());
}

TEST_F(Recorded, TokensAreToldApartLongAfterTheirEnd)
{
    options.service.tokenLife = 60s;
    start();
    takeToken();
    const auto code = [this] { return sellIn("group-1/sell", tokenHeader()).json()["error"]["code"]; };
    passTime(60s);
    EXPECT_EQ(code(), 11);
    passTime(std::chrono::days(1000));
    EXPECT_EQ(code(), 11);
    // The state is in memory, so the emulator that starts has forgotten the token.
    start();
    EXPECT_EQ(code(), 11);
    passTime(-std::chrono::days(1000) - 60s);
    EXPECT_EQ(code(), 10);
}

TEST_F(Recorded, LoginsThatBreakThePatternAreInvalid)
{
    options.service.users.push_back({.login = "of the house", .password = "secret", .groups = {}});
    start();
    for (const std::string name : {"a b", "a\"b", "<a>", "a\nb", "\xff"})
        EXPECT_EQ(
            exchange(postRequest("/possystem/v4/getToken", Json{{"login", name}, {"pass", "x"}}.dump(-1, ' ',
                                                               false, Json::error_handler_t::ignore)))
                .json()["error"]["code"],
            name == "\xff" ? 13 : 32)
            << name;
    EXPECT_EQ(login(std::string(101, 'a'), "x").json()["error"]["code"], 32);
    EXPECT_EQ(login(std::string(100, 'a'), "x").json()["error"]["code"], 12);
    EXPECT_EQ(login("касса-1_a@shop.example", "x").json()["error"]["code"], 12);
    EXPECT_EQ(login("of the house", "x").json()["error"]["code"], 12);
    EXPECT_EQ(login("of the house", "secret").status, 200);
}

TEST(Token, NamesItsEnd)
{
    const emulator::TimePoint end(std::chrono::milliseconds(1'772'323'200'123));
    const std::string token = emulator::newToken(end);
    EXPECT_THAT(token, testing::MatchesRegex("[-_0-9A-Za-z]{128}"));
    EXPECT_EQ(emulator::endOf(token), end);
    EXPECT_NE(emulator::newToken(end), token);
    for (std::size_t i = 0; i < token.size(); ++i) {
        std::string changed = token;
        changed[i] = changed[i] == '0' ? '1' : '0';
        EXPECT_EQ(emulator::endOf(changed), std::nullopt) << i;
    }
    EXPECT_EQ(emulator::endOf(""), std::nullopt);
    EXPECT_EQ(emulator::endOf(token + "A"), std::nullopt);
}
