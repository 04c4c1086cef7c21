#include "emulator/replay/recording.h"
#include "emulator/values/jsonreader.h"
#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <unistd.h>

using emulator::Json;
using testing::HasSubstr;

namespace {

class Replay : public RunningEmulator
{
protected:
    Replay()
        : file(testing::TempDir() + "fremulator-replay-" + std::to_string(::getpid()))
    {
    }
    ~Replay() override { std::remove(file.c_str()); }

    void replay(const std::string& recording)
    {
        std::ofstream(file) << recording;
        options.replay = file;
        start();
    }

    const std::string file;
};

Json entry(const std::string& method, const std::string& url, int status, const Json& content)
{
    return {{"request", {{"method", method}, {"url", url}}},
        {"response", {{"status", status}, {"content", content}}}};
}

Json answerText(const Json& body)
{
    return {{"mimeType", "application/json; charset=utf-8"}, {"text", body.dump()}};
}

std::string har(const Json& entries)
{
    return Json{{"log", {{"version", "1.2"}, {"entries", entries}}}}.dump(2);
}

const std::string service = "https://service.example/possystem/v4/";

} // namespace

TEST_F(Replay, RepeatsWhatTheEmulatorItselfRecorded)
{
    options.service.waits = 1;
    start();
    takeToken();
    const RawClient::Answer sold = sell(goodReceipt());
    const std::string uuid = sold.json()["uuid"];
    const RawClient::Answer waiting = report(uuid);
    const RawClient::Answer done = report(uuid);
    EXPECT_EQ(done.json()["status"], "done");
    const std::string recording = get("/_emulator/recording").body;
    EXPECT_THAT(recording, testing::Not(HasSubstr("secret")));

    passTime(std::chrono::hours(1));
    replay(recording);
    takeToken();
    Json another = goodReceipt();
    another["external_id"] = "another";
    const RawClient::Answer again = sell(another);
    EXPECT_EQ(again.status, sold.status);
    EXPECT_EQ(again.body, sold.body);
    EXPECT_EQ(report(uuid).body, waiting.body);
    EXPECT_EQ(report(uuid).body, done.body);

    const Json recorded = get("/_emulator/exchanges?limit=10").json()["exchanges"];
    EXPECT_EQ(recorded.size(), 4U);
    EXPECT_EQ(recorded[0]["endpoint"], "report");
}

TEST_F(Replay, SaysWhenItHasNothingLeft)
{
    replay(har({entry("POST", service + "group-1/sell", 200, answerText({{"uuid", "u"}})),
        entry("GET", service + "getToken?login=shop&pass=secret", 200, answerText({{"token", "t"}}))}));
    EXPECT_EQ(sell(goodReceipt()).json()["uuid"], "u");
    const RawClient::Answer nothing = sell(goodReceipt());
    EXPECT_EQ(nothing.status, 500);
    EXPECT_EQ(nothing.json()["error"]["code"], 50);
    EXPECT_EQ(nothing.json()["error"]["text"],
        "В записи больше нет ответа на вызов group-1/sell. Осталось: getToken (1)");
    EXPECT_THAT(report("x").body, HasSubstr("group-1/report/x. Осталось: getToken (1)"));
    EXPECT_THAT(get("/possystem/v4/schema/a/b").body, HasSubstr("GET /possystem/v4/schema/a/b. "));
    takeToken();
    EXPECT_THAT(sell(goodReceipt()).body, HasSubstr("Осталось: ничего"));
}

TEST_F(Replay, NeverShowsTheTokenHoweverItWasWritten)
{
    const Json token{{"error", nullptr}, {"token", "hidden"}};
    const std::string spaced = R"({"error": null, "token" : "hidden"})";
    const std::string nested = R"({"data":[{"Token":"hidden"}]})";
    const std::string broken = R"({"token": "hidden)";
    const std::string escaped = R"({"\u0074oken":"hidden"})";
    const std::string plain = "token=hidden";
    const std::string word = R"("hidden")";
    const std::string twice = R"({"data":{"token":"hidden"},"data":1})";
    const std::vector<std::string> bodies{token.dump(4), spaced, nested, broken, escaped, plain, word, twice};
    Json entries = Json::array();
    for (const std::string& body : bodies)
        entries.push_back(
            entry("GET", service + "getToken", 200, {{"mimeType", "application/json"}, {"text", body}}));
    replay(har(entries));
    for (const std::string& body : bodies)
        EXPECT_EQ(get(base + std::string("getToken")).body, body);
    EXPECT_THAT(get("/_emulator/exchanges").body, testing::Not(HasSubstr("hidden")));
    EXPECT_THAT(get("/_emulator/recording").body, testing::Not(HasSubstr("hidden")));
}

TEST_F(Replay, RepeatsAndRecordsOddErrors)
{
    Json entries = Json::array();
    const std::vector<Json> codes{"32", nullptr, 32.5, Json::array()};
    for (const Json& code : codes)
        entries.push_back(
            entry("POST", service + "group-1/sell", 400, answerText({{"error", {{"code", code}}}})));
    replay(har(entries));
    for (const Json& code : codes) {
        const RawClient::Answer answer = sell(goodReceipt());
        EXPECT_EQ(answer.status, 400) << code;
        EXPECT_EQ(answer.json()["error"]["code"], code);
    }
    EXPECT_EQ(get("/_emulator/exchanges").json()["exchanges"].size(), codes.size());
}

TEST_F(Replay, ListsRefusedCallsWithTheFieldsThatTheirAnswerNames)
{
    const auto refused = [](int code, const std::string& text) {
        return entry("POST", service + "group-1/sell", 400,
            answerText({{"error", {{"code", code}, {"text", text}}}, {"status", "fail"}}));
    };
    replay(har({refused(32,
                    "Ошибка валидации входного чека. Ошибочные поля : NumberTooSmall: #/receipt.total, "
                    "PatternMismatch: #/receipt.items[0].vat.type, Strange: #/external_id."),
        refused(20, "Код группы"), entry("POST", service + "group-1/sell", 502, answerText({{"no", "code"}})),
        entry("POST", service + "group-1/sell", 200, answerText({{"uuid", "u"}}))}));
    EXPECT_EQ(sell(goodReceipt("wrong")).status, 400);
    const Json row = get("/_emulator/receipts").json()["receipts"][0];
    EXPECT_EQ(row["external_id"], "wrong");
    EXPECT_EQ(row["code"], 32);
    EXPECT_EQ(row["total"], 150.5);
    EXPECT_EQ(row["first_field"]["field"], "receipt.total");
    EXPECT_EQ(get("/_emulator/refusals/" + row["refusal"].dump()).json()["fields"], Json::parse(R"([
        {"field": "receipt.total", "rule": "число слишком маленькое"},
        {"field": "receipt.items[0].vat.type", "rule": "значение записано не по правилам"},
        {"field": "external_id", "rule": "Strange"}])"));

    EXPECT_EQ(sell(goodReceipt("foreign")).status, 400);
    EXPECT_EQ(sell(goodReceipt("lost")).status, 502);
    const auto listed = [this] {
        std::string all;
        const Json list = get("/_emulator/receipts").json();
        for (const Json& one : list["receipts"])
            all += one["external_id"].get<std::string>() + one["code"].dump() + " ";
        return all;
    };
    // Whether a call without a code registered anything is not known.
    EXPECT_EQ(listed(), "foreign20 wrong32 ");
    EXPECT_EQ(sell(goodReceipt("wrong")).json()["uuid"], "u");
    EXPECT_EQ(listed(), "foreign20 ");
    EXPECT_EQ(sell(goodReceipt("late")).status, 500);
    EXPECT_EQ(listed(), "late50 foreign20 ");
}

TEST_F(Replay, BeginsWithTheTokenHoweverLongTheSessionWas)
{
    start();
    takeToken();
    for (int i = 0; i < 1001; ++i)
        EXPECT_EQ(report("unknown").status, 400);
    const std::string recording = get("/_emulator/recording?group=group-1").body;
    EXPECT_EQ(std::ranges::count(recording, '\n'), 1002);
    replay(recording);
    takeToken();
    EXPECT_EQ(report("unknown").status, 400);
}

TEST_F(Replay, DecodesBase64InLines)
{
    replay(har(Json::array({entry("POST", service + "group-1/sell", 502,
        {{"mimeType", "text/html"}, {"text", "PGgx\r\nPkJh ZCBHYXRl\nd2F5PC9oMT4=\n"},
            {"encoding", "base64"}})})));
    EXPECT_EQ(sell(goodReceipt()).body, "<h1>Bad Gateway</h1>");
}

TEST_F(Replay, GivesStatusTypeAndBodyOfAHarAndSkipsOtherSites)
{
    const std::string base64 = "PGgxPkJhZCBHYXRld2F5PC9oMT4=";
    replay(har({entry("GET", "https://service.example/favicon.ico", 404, Json::object()),
        entry("POST", service + "group-1/sell/", 502,
            {{"mimeType", "text/html"}, {"text", base64}, {"encoding", "base64"}}),
        entry("POST", service + "group-1/sell", 0, Json::object()),
        entry("POST", service + "other/sell", 400, answerText({{"uuid", "other"}}))}));
    const RawClient::Answer html = sell(goodReceipt());
    EXPECT_EQ(html.status, 502);
    EXPECT_THAT(html.head, HasSubstr("Content-Type: text/html\r\n"));
    EXPECT_EQ(html.body, "<h1>Bad Gateway</h1>");
    RawClient client(port());
    client.send(postRequest(base + std::string("group-1/sell"), "{}", tokenHeader()));
    const RawClient::Answer lost = client.receiveAll();
    EXPECT_EQ(lost.status, 0);
    EXPECT_EQ(lost.end, RawClient::End::Closed);
    EXPECT_EQ(post(base + std::string("other/sell"), goodReceipt()).json()["uuid"], "other");
}

TEST_F(Replay, SaysThatFaultsAndExpectationsDoNotApply)
{
    replay(har({entry("POST", service + "group-1/sell", 200, answerText({{"uuid", "u"}})),
        entry("POST", service + "group-1/sell", 200, answerText({{"uuid", "v"}}))}));
    const RawClient::Answer fault = post("/_emulator/faults", {{"endpoint", "sell"}, {"effect", "silent"}});
    EXPECT_EQ(fault.status, 400);
    EXPECT_EQ(fault.json()["error"], "faults do not apply to answers from a recording");
    EXPECT_EQ(get("/_emulator/faults").json()["faults"].size(), 0U);
    const RawClient::Answer expectation = get("/_emulator/expect?external_id=till-1");
    EXPECT_EQ(expectation.status, 417);
    EXPECT_EQ(expectation.json()["reason"], "answers from a recording register no receipts");
}

TEST_F(Replay, CreatesNoDatabaseWithoutARecording)
{
    options.replay = file + "-missing";
    options.database = file + ".db";
    EXPECT_THROW(start(), emulator::JsonError);
    EXPECT_FALSE(std::ifstream(options.database).is_open());
}

TEST_F(Replay, RefusesAMalformedFileWithPlaceRuleAndWhatToDoButWithoutItsContent)
{
    const std::string good =
        R"({"request":"POST /possystem/v4/getToken HTTP/1.1\r\n\r\n{\"pass\":\"hidden\"}","answer":""})"
        "\n";
    const auto answer = [](const std::string& text) {
        return Json{
            {"request", "GET /possystem/v4/g/report/u HTTP/1.1\r\nToken: hidden\r\n\r\n"}, {"answer", text}}
            .dump();
    };
    const auto response = [](const Json& json) {
        Json one = entry("GET", service + "getToken?pass=hidden", 200, Json::object());
        one["response"] = json;
        return har(Json::array({one}));
    };
    const std::pair<std::string, std::string> rows[] = {
        {"", ": is empty. "},
        {"hidden", "line 1: is neither a HAR nor a line of JSON with request and answer"},
        {"{\n\"log\": {\n \"hidden\", ", "line 3: is neither a HAR nor"},
        {std::string(1000, '['), "is nested too deeply for a HAR"},
        {"[]", "is neither a HAR, an object with log, nor lines of JSON with request and answer"},
        {"{}", "is neither a HAR, an object with log, nor lines of JSON with request and answer"},
        {R"({"answer": "hidden"})", "is neither a HAR, an object with log, nor lines of JSON"},
        {R"({"log": []})", "is neither a HAR, an object with log, nor lines of JSON"},
        {R"({"log": {"entries": {}}})", "log.entries must be an array"},
        {R"({"log": {"entries": []}})", "has no call to an address with /possystem/v4/"},
        {har(Json::array({Json{{"request", {{"method", "GET"}}}}})),
            "log.entries[0].request.url must be a text"},
        {response({{"content", Json::object()}}),
            "log.entries[0].response.status must be 0 or from 100 to 999"},
        {response({{"status", "hidden"}}), "log.entries[0].response.status must be a whole number"},
        {response({{"status", 200}}), "log.entries[0].response.content must be an object"},
        {response({{"status", 200}, {"content", {{"text", "hid"}, {"encoding", "base64"}}}}),
            "log.entries[0].response.content.text must be base64"},
        {response({{"status", 200}, {"content", {{"text", "x"}, {"encoding", "hidden"}}}}),
            "log.entries[0].response.content.encoding must be base64"},
        {response({{"status", 200}, {"content", {{"size", 512}}}}),
            "log.entries[0].response.content.text is missing although size is above 0"},
        {good + "hidden", "line 2 must be a JSON object with request and answer"},
        {good + "\n" + R"({"request": 1, "answer": ""})", "line 3.request must be a string"},
        {good + R"({"request": "hidden", "answer": ""})", "line 2.request must begin with a line such as"},
        {good + R"({"request": "GET / HTTP/1.1"})", "line 2.answer must be a text, empty if"},
        {good + answer("HTTP/1.1 hidden"), "line 2.answer must begin with a line such as HTTP/1.1 200 OK"},
        {good + answer("HTTP/1.1 200 OK\nContent-Type: text/plain\n\nhidden"),
            "line 2.answer must have an empty line after its headers, with line ends as \\r\\n"},
        {good + answer("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"),
            "line 2.answer must have its body in one"},
        {good + answer("HTTP/1.1 200 OK\r\n\r\nhidden… (17 bytes more)"), "line 2.answer is cut off"},
    };
    for (const auto& [content, complaint] : rows) {
        std::ofstream(file) << content;
        try {
            (void)emulator::readRecording(file);
            FAIL() << "taken: " << content;
        } catch (const emulator::JsonError& error) {
            const std::string text = error.what();
            EXPECT_THAT(text, HasSubstr(file));
            EXPECT_THAT(text, HasSubstr(complaint));
            EXPECT_THAT(text, testing::Not(HasSubstr("hidden")));
            EXPECT_THAT(text, testing::EndsWith(" again."));
        }
    }
}

TEST_F(Replay, ReadsNothingButTheCallsOfTheService)
{
    std::ofstream(file)
        << "\n \r\n"
        << R"({"request":"GET /other HTTP/1.1\r\n\r\n","answer":"HTTP/1.1 200 OK\r\n\r\n"})"
           "\n\n"
        << R"({"endpoint":"callback","request":"POST /possystem/v4/a/sell HTTP/1.1\r\n\r\n","answer":""})"
           "\n"
        << R"({"request":"GET /possystem/v4/getToken?login=l HTTP/1.1","answer":"HTTP/1.0 401\r\ncontent-type:a\r\n\r\nb"})";
    const emulator::Recording recording = emulator::readRecording(file);
    ASSERT_EQ(recording.size(), 1U);
    EXPECT_EQ(recording[0].key, "getToken");
    EXPECT_EQ(recording[0].answer.reply.status, 401);
    EXPECT_EQ(recording[0].answer.reply.contentType, "a");
    EXPECT_EQ(recording[0].answer.reply.body, "b");
}
