#pragma once

#include "tests/emulator/support/running.h"

#include <functional>
#include <string>
#include <vector>

/// Answers in the shape in which the service gives them, key by key and in their order.
namespace recorded {

using emulator::Json;

struct Service : RunningEmulator
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

    Service()
    {
        options.service.groups = {{.code = "group-1"}, {.code = "group-2"}, {.code = "foreign"},
            {.code = "other", .protocolRefused = true}};
        options.service.users = {
            {.login = "shop", .password = "secret", .groups = {"group-1", "group-2", "other"}},
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

    /// A sale, some status calls, and the answer to the last of them.
    RawClient::Answer sellAndAsk(const Json& body = goodReceipt())
    {
        return report(sell(body).json()["uuid"]);
    }

    /// A sale with headers of the test's own besides the token.
    RawClient::Answer sellWith(const std::string& headers, const std::string& path = "group-1/sell")
    {
        const std::string body = goodReceipt().dump();
        return exchange("POST /possystem/v4/" + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers +
                        "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    }

    void restart(const std::function<void(emulator::ServiceOptions&)>& change)
    {
        change(options.service);
        start();
        takeToken();
    }

    /// The status word of an answer as its body.
    static RawClient::Answer statusIn(RawClient::Answer answer)
    {
        answer.body = answer.json().value("status", "none");
        return answer;
    }

    /// Likewise shift, receipt in the shift and document.
    static RawClient::Answer numbersIn(RawClient::Answer answer)
    {
        const Json payload = answer.json()["payload"];
        answer.body = payload["shift_number"].dump() + " " + payload["fiscal_receipt_number"].dump() + " " +
                      payload["fiscal_document_number"].dump();
        return answer;
    }

    /// The status of a receipt some time after its sale.
    RawClient::Answer askAfter(std::chrono::milliseconds time)
    {
        const std::string uuid = sell(goodReceipt()).json()["uuid"];
        passTime(time);
        takeToken();
        const auto answer = report(uuid);
        passTime(-time);
        return answer;
    }

    /// The address in the status answer, and its warnings.
    RawClient::Answer callback(const std::string& url)
    {
        auto answer = sellAndAsk(changed(goodReceipt(), "/service", {{"callback_url", url}}));
        answer.body = Json::array({answer.json()["callback_url"], answer.json()["warnings"]}).dump();
        return answer;
    }

    RawClient::Answer failed(const std::string& type)
    {
        fail(type);
        return sellAndAsk();
    }

    /// Lets the next document fail.
    void fail(const std::string& type)
    {
        const Json fault{{"endpoint", "sell"}, {"effect", "fail"}, {"type", type}, {"match", {{"next", 1}}}};
        EXPECT_EQ(post("/_emulator/faults", fault).status, 200);
    }
};

struct Row
{
    std::string rule;
    /// d: described by the service; r: recorded; o: told by users; ?: inferred.
    char source;
    std::function<RawClient::Answer(Service&)> ask;
    int status;
    std::string answer;
};

/// Asks a new emulator for each row. What differs from answer to answer is a word in capitals.
void expectAnswers(Service& service, const std::vector<Row>& rows);

/// The error object of a call, without what follows.
[[nodiscard]] std::string error(int code, const std::string& text);
/// The end of an answer on the first of March at three.
[[nodiscard]] std::string timestamp();
/// The answer to a register call.
[[nodiscard]] std::string accepted();

} // namespace recorded
