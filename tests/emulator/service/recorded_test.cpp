#include "tests/emulator/service/recorded.h"

#include "emulator/protocol/token.h"

#include <gmock/gmock.h>

using namespace recorded;
using namespace std::chrono_literals;

namespace {

using Recorded = recorded::Service;

std::vector<Row> errorRows()
{
    return {
        {"code 10", 'r', [](Service& s) { return s.sellIn("group-1/sell", ""); }, 401,
            "{" + error(10, "Не распознан токен запроса") + "," + timestamp()},
        {"code 11", 'r',
            [](Service& s) {
                s.passTime(24h);
                const auto answer = s.sellIn("group-1/sell", s.tokenHeader());
                s.passTime(-24h);
                return answer;
            },
            401, "{" + error(11, "Срок действия токена истёк") + R"(,"timestamp":"02.03.2026 03:00:00"})"},
        {"code 12", 'r', [](Service& s) { return s.login("shop", "wrong"); }, 401,
            "{" + error(12, "Неверный логин или пароль") + "," + timestamp()},
        {"code 13", 'd', [](Service& s) { return s.login("", "secret"); }, 400,
            "{" + error(13, "Запрос токена не прошёл проверку") + "," + timestamp()},
        {"code 14", 'd', [](Service& s) { return s.login("blocked", "secret"); }, 403,
            "{" + error(14, "Пользователь заблокирован") + "," + timestamp()},
        {"code 20", 'r', [](Service& s) { return s.sellIn("foreign/sell", s.tokenHeader()); }, 401,
            "{" + error(20, "Код группы не соответствует токену") + "," + timestamp()},
        {"code 21", 'r', [](Service& s) { return s.sellIn("other/sell", s.tokenHeader()); }, 401,
            "{" + error(21, "Группа не поддерживает эту версию протокола") + "," + timestamp()},
        {"code 21 of an account", 'o', [](Service& s) { return s.login("v5", "secret"); }, 401,
            "{" + error(21, "Учётная запись относится к другой версии протокола") + "," + timestamp()},
        {"code 30", 'd', [](Service& s) { return s.report("nothing"); }, 400,
            "{" + error(30, "Документ с таким uuid не найден") + R"(,"status":"fail","payload":null,)" +
                timestamp()},
        {"code 31", 'r', [](Service& s) { return s.sellIn("group-1/give", s.tokenHeader()); }, 400,
            "{" + error(31, "Операция не поддерживается") + "," + timestamp()},
        {"code 32 of a receipt", 'r',
            [](Service& s) {
                Json body = goodReceipt();
                body["receipt"]["total"] = -1;
                return s.sell(body);
            },
            400,
            "{" +
                error(
                    32, "Ошибка валидации входного чека. Ошибочные поля : NumberTooSmall: #/receipt.total") +
                R"(,"status":"fail",)" + timestamp()},
        {"code 32 of a login", 'r', [](Service& s) { return s.login("no login", "secret"); }, 400,
            "{" + error(32, "PatternMismatch: #/login") + R"(,"status":"fail",)" + timestamp()},
        {"code 33", 'r',
            [](Service& s) {
                EXPECT_EQ(s.sell(goodReceipt("till-1")).status, 200);
                return s.sell(goodReceipt("till-1"));
            },
            400,
            R"({"uuid":"UUID","status":"wait",)" +
                error(
                    33, R"(В системе существует чек с external_id : \"till-1\" и group_code: \"group-1\")") +
                "," + timestamp()},
        {"code 34", 'r',
            [](Service& s) {
                s.options.service.waits = 1;
                s.start();
                s.takeToken();
                return s.sellAndAsk();
            },
            200,
            R"({"uuid":"UUID","status":"wait",)" +
                error(34, "Состояние чека не найдено. Попробуйте позднее.") + "," + timestamp()},
        {"code 40", 'r',
            [](Service& s) {
                return s.exchange(postRequest("/possystem/v4/group-1/sell", "{", s.tokenHeader()));
            },
            400, "{" + error(40, "Некорректный запрос") + "," + timestamp()},
        {"code 41", 'r',
            [](Service& s) {
                return s.call(
                    "POST", "/possystem/v4/group-1/sell", s.tokenHeader() + "Content-Type: text/plain\r\n");
            },
            415, "{" + error(41, "Некорректный Content-Type") + "," + timestamp()},
        {"code 50", 'r',
            [](Service& s) {
                EXPECT_EQ(
                    s.post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "error"}}).status, 200);
                return s.sell(goodReceipt());
            },
            500, "{" + error(50, "Внутренняя ошибка сервера") + "," + timestamp()},
        {"the id of another receipt", '?',
            [](Service& s) {
                EXPECT_EQ(s.sell(goodReceipt("till-1")).status, 200);
                return s.sell(changed(goodReceipt("till-1"), "/receipt/items/0/name", "Хлеб"));
            },
            400,
            R"({"uuid":"UUID","status":"wait",)" +
                error(
                    33, R"(В системе существует чек с external_id : \"till-1\" и group_code: \"group-1\")") +
                "," + timestamp()},
    };
}

std::vector<Row> callRows()
{
    return {
        {"a token", 'd', [](Service& s) { return s.login("shop", "secret"); }, 200,
            R"({"error":null,"token":"TOKEN",)" + timestamp()},
        {"an accepted receipt", 'd', [](Service& s) { return s.sell(goodReceipt()); }, 200, accepted()},
        {"a token asked for with GET", 'd',
            [](Service& s) { return s.get("/possystem/v4/getToken?login=shop&pass=secret"); }, 200,
            R"({"error":null,"token":"TOKEN",)" + timestamp()},
        {"a token in the address", 'd',
            [](Service& s) {
                const std::string header = s.tokenHeader();
                const std::string token = header.substr(7, header.size() - 9);
                return s.sellIn("group-1/sell?token=" + token, "");
            },
            200, accepted()},
        {"a content type without a charset", 'o',
            [](Service& s) { return s.sellWith(s.tokenHeader() + "Content-Type: application/json\r\n"); },
            200, accepted()},
        {"no content type", 'o', [](Service& s) { return s.sellWith(s.tokenHeader()); }, 200, accepted()},
        {"a slash at the end", 'o', [](Service& s) { return s.sellIn("group-1/sell/", s.tokenHeader()); },
            200, accepted()},
        {"a slash at the end of the address for tokens", 'o',
            [](Service& s) {
                return s.post("/possystem/v4/getToken/", {{"login", "shop"}, {"pass", "secret"}});
            },
            200, R"({"error":null,"token":"TOKEN",)" + timestamp()},
        {"a slash at the end of the address for status", 'o',
            [](Service& s) {
                const std::string uuid = s.sell(goodReceipt()).json()["uuid"];
                return s.statusIn(s.report(uuid + "/"));
            },
            200, "done"},
        {"a token a second before its end", 'd',
            [](Service& s) {
                s.passTime(24h - 1s);
                auto answer = s.sell(goodReceipt());
                s.passTime(1s - 24h);
                return s.statusIn(answer);
            },
            200, "wait"},
        {"an earlier token after a newer one", 'd',
            [](Service& s) {
                const std::string earlier = s.tokenHeader();
                s.takeToken();
                EXPECT_NE(s.tokenHeader(), earlier);
                return s.sellIn("group-1/sell", earlier);
            },
            200, accepted()},
        {"the uuid of the first call", 'd',
            [](Service& s) {
                const std::string first = s.sell(goodReceipt()).json()["uuid"];
                auto answer = s.sell(goodReceipt());
                answer.body = answer.json()["uuid"] == first ? "the same" : answer.body;
                return answer;
            },
            400, "the same"},
        {"the same id in another group", 'd',
            [](Service& s) {
                EXPECT_EQ(s.sell(goodReceipt()).status, 200);
                return s.sellIn("group-2/sell", s.tokenHeader());
            },
            200, accepted()},
        {"the schema of requests, which the emulator does not have", 'o',
            [](Service& s) { return s.call("GET", "/possystem/v4/schema/sell", s.tokenHeader()); }, 400,
            "{" + error(40, "Некорректный запрос") + "," + timestamp()},
    };
}

RawClient::Answer registerBy(Service& s, const std::string& operation)
{
    const bool correction = operation.ends_with("_correction");
    const Json body = correction ? goodCorrection() : goodReceipt();
    return s.exchange(postRequest("/possystem/v4/group-1/" + operation, body.dump(), s.tokenHeader()));
}

} // namespace

TEST_F(Recorded, ErrorsHaveTheKeysAndTextsOfTheService)
{
    expectAnswers(*this, errorRows());
}

TEST_F(Recorded, CallsAreAnsweredAsByTheService)
{
    expectAnswers(*this, callRows());
}

TEST_F(Recorded, EveryOperationRegisters)
{
    std::vector<Row> rows;
    for (const std::string operation :
        {"sell", "sell_refund", "sell_correction", "buy", "buy_refund", "buy_correction"})
        rows.push_back(
            {operation, 'd', [operation](Service& s) { return registerBy(s, operation); }, 200, accepted()});
    expectAnswers(*this, rows);
}

TEST_F(Recorded, EveryCodeHasItsHttpStatusAndItsStatusWord)
{
    const struct
    {
        int code;
        char source;
        int http;
        const char* word;
    } rows[] = {{0, 'd', 400, "fail"}, {1, 'd', 400, "fail"}, {10, 'r', 401, ""}, {11, 'r', 401, ""},
        {12, 'r', 401, ""}, {13, 'd', 400, ""}, {14, 'd', 403, ""}, {20, 'r', 401, ""}, {21, 'r', 401, ""},
        {30, 'd', 400, "fail"}, {31, 'r', 400, ""}, {32, 'r', 400, "fail"}, {33, 'r', 400, "wait"},
        {34, 'r', 200, "wait"}, {40, 'r', 400, ""}, {41, 'r', 415, ""}, {50, 'r', 500, ""}};
    start();
    takeToken();
    for (const auto& row : rows) {
        const Json fault{
            {"endpoint", "sell"}, {"effect", "error"}, {"code", row.code}, {"match", {{"next", 1}}}};
        EXPECT_EQ(post("/_emulator/faults", fault).status, 200);
        const auto answer = sell(goodReceipt());
        EXPECT_EQ(answer.status, row.http) << row.code;
        EXPECT_EQ(answer.json()["error"]["code"], row.code);
        EXPECT_EQ(answer.json().value("status", ""), row.word) << row.code << " (" << row.source << ")";
    }
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
