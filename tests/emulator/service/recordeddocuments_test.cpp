#include "tests/emulator/service/recorded.h"

#include <gmock/gmock.h>

using namespace recorded;
using namespace std::chrono_literals;

namespace {

struct RecordedDocuments : recorded::Service
{
};

// The status answer for a document that failed with this error.
std::string failed(const std::string& error)
{
    return R"({"uuid":"UUID","error":)" + error +
           R"(,"status":"fail","payload":null,"warnings":null,"timestamp":"01.03.2026 03:00:00",)"
           R"("group_code":"group-1","daemon_code":"fremulator","device_code":"KKT000001",)"
           R"("external_id":"id-1","callback_url":""})";
}

std::vector<Row> documentRows()
{
    return {
        {"a registered receipt, its time without seconds", 'r',
            [](Service& s) {
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
        {"the taxpayer number of another group", 'r',
            [](Service& s) {
                s.options.service.groups.front().inn = "7700000001";
                s.start();
                s.takeToken();
                return s.sellAndAsk();
            },
            200,
            failed(R"({"code":2009,"text":"ИНН организации не совпадает с ИНН группы","type":"agent"})")},
        {"a wrong sum of VAT", 'r',
            [](Service& s) {
                return s.sellAndAsk(changed(goodReceipt(), "/receipt/items/0/vat/sum", 15.05));
            },
            200, failed(R"({"code":502,"text":"Некорректная сумма налога","type":"driver"})")},
        {"payments that differ from the total", 'o',
            [](Service& s) {
                const Json body = changed(goodReceipt(), "/receipt/payments/0/sum", 200);
                auto answer = s.sellAndAsk(body);
                answer.body = answer.json()["payload"]["total"].dump();
                return answer;
            },
            200, "150.5"},
        {"an older site of the tax authority", 'r',
            [](Service& s) {
                s.options.service.fnsSite = "www.nalog.ru";
                s.start();
                s.takeToken();
                auto answer = s.sellAndAsk();
                answer.body = answer.json()["payload"]["fns_site"].dump();
                return answer;
            },
            200, R"("www.nalog.ru")"},
        {"a document that failed with type driver", 'd', [](Service& s) { return s.failed("driver"); }, 200,
            failed(R"({"code":502,"text":"Касса отклонила документ","type":"driver"})")},
        {"a document that failed with type agent", 'r', [](Service& s) { return s.failed("agent"); }, 200,
            failed(R"({"code":2003,"text":"Агент не смог передать документ на кассу","type":"agent"})")},
        {"a document that failed with type timeout", 'd', [](Service& s) { return s.failed("timeout"); }, 200,
            failed(R"({"code":1,"text":"Документ слишком долго ждал в очереди","type":"timeout"})")},
        {"a document that failed with type system", 'd', [](Service& s) { return s.failed("system"); }, 200,
            failed(R"({"code":1,"text":"Не удалось обработать чек","type":"system"})")},
        {"a document that failed with type unknown", 'd', [](Service& s) { return s.failed("unknown"); }, 200,
            failed(R"({"code":0,"text":"Неизвестная ошибка","type":"unknown"})")},
        {"a receipt that waited for a register for over 300 s", 'd',
            [](Service& s) {
                s.restart([](auto& options) { options.latencyLow = options.latencyHigh = 301s; });
                EXPECT_EQ(s.sell(goodReceipt("first")).status, 200);
                const std::string uuid = s.sell(goodReceipt()).json()["uuid"];
                s.passTime(300s);
                auto answer = s.report(uuid);
                s.passTime(-300s);
                answer.body = answer.json()["error"].dump();
                return answer;
            },
            200, R"({"code":1,"text":"Документ слишком долго ждал в очереди","type":"timeout"})"},
        {"the same receipt again after it failed", '?',
            [](Service& s) {
                EXPECT_EQ(s.statusIn(s.failed("driver")).body, "fail");
                auto answer = s.sell(goodReceipt());
                answer.body = answer.json()["error"]["code"].dump();
                return answer;
            },
            400, "33"},
        {"the same receipt under another id after it failed", '?',
            [](Service& s) {
                EXPECT_EQ(s.statusIn(s.failed("driver")).body, "fail");
                return s.statusIn(s.sellAndAsk(goodReceipt("id-2")));
            },
            200, "done"},
        {"an operator without links to receipts", 'd',
            [](Service& s) {
                s.restart([](auto& options) { options.groups.front().receiptUrl = false; });
                auto answer = s.sellAndAsk();
                answer.body = answer.json()["payload"].contains("ofd_receipt_url") ? answer.body : "no link";
                return answer;
            },
            200, "no link"},
        {"the second receipt of a shift", 'd',
            [](Service& s) {
                EXPECT_EQ(s.sell(goodReceipt("first")).status, 200);
                return s.numbersIn(s.sellAndAsk());
            },
            200, "1 2 4"},
        {"the first receipt of the next shift", 'd',
            [](Service& s) {
                EXPECT_EQ(s.sell(goodReceipt("first")).status, 200);
                s.passTime(24h);
                s.takeToken();
                const auto answer = s.numbersIn(s.sellAndAsk());
                s.passTime(-24h);
                return answer;
            },
            200, "2 1 6"},
        {"status after 32 days", 'd',
            [](Service& s) { return s.statusIn(s.askAfter(std::chrono::days(32))); }, 200, "done"},
        {"status after more than 32 days", 'd',
            [](Service& s) { return s.statusIn(s.askAfter(std::chrono::days(32) + 1s)); }, 400, "fail"},
        {"a second status call within a second, where the pace counts", '?',
            [](Service& s) {
                s.restart([](auto& options) { options.pace = true; });
                const std::string uuid = s.sell(goodReceipt()).json()["uuid"];
                EXPECT_EQ(s.report(uuid).status, 200);
                auto answer = s.report(uuid);
                answer.body = answer.json()["error"]["code"].dump();
                return answer;
            },
            429, "40"},
        {"a callback_url", 'd', [](Service& s) { return s.callback("https://shop.example/done"); }, 200,
            R"(["https://shop.example/done",null])"},
        {"no callback_url", 'd', [](Service& s) { return s.callback(""); }, 200, R"(["",null])"},
        {"a callback_url that does not match its mask", 'r',
            [](Service& s) { return s.callback("shop.example/done"); }, 200,
            R"(["shop.example/done",{"callback_url":"PatternMismatch: #/service.callback_url"}])"},
    };
}

} // namespace

TEST_F(RecordedDocuments, HaveTheStatusAnswersOfTheService)
{
    expectAnswers(*this, documentRows());
}
