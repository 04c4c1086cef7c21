#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"
#include "tests/support/wire/rawserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto token = R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})";

// One receipt and its answers, where the sources disagree about their shape. ID stands for the receipt.
struct Receipt
{
    const char* id;
    int status;
    const char* registration;
    // The answer to the first question about the document; the next one gets `done`.
    const char* report;
};

constexpr auto accepted = R"({"uuid":"ID","status":"wait","error":null,"timestamp":"t"})";
constexpr auto done =
    R"({"uuid":"ID","external_id":"ID","status":"done","error":null,"payload":{"total":160.0,
    "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})";

const Receipt receipts[] = {
    {"waits-with-uuid", 200, accepted,
        R"({"uuid":"ID","status":"wait","error":{"error_id":"e","code":34,"text":"t","type":"system"}})"},
    {"waits-without-uuid", 200, accepted,
        R"({"status":"wait","error":{"error_id":"e","code":34,"text":"t","type":"system"},"callback_url":""})"},
    {"known-with-status", 400,
        R"({"uuid":"ID","status":"wait","error":{"error_id":"e","code":33,"text":"t","type":"system"}})",
        done},
    {"known-without-status", 400,
        R"({"uuid":"ID","error":{"error_id":"e","code":33,"text":"t","type":"system"}})", done},
    {"with-all-keys", 200, accepted,
        R"({"uuid":"ID","error":null,"status":"done","payload":{"total":160.0,"ofd_inn":"7700000099",
        "fns_site":"www.nalog.gov.ru","fn_number":"9999078900006364","shift_number":1,
        "receipt_datetime":"01.03.2026 03:00:00","fiscal_receipt_number":1,"fiscal_document_number":29414,
        "ecr_registration_number":"0000123400000001","fiscal_document_attribute":3449555941},
        "warnings":null,"timestamp":"t","group_code":"shop_1","daemon_code":"d","device_code":"KKT000132",
        "external_id":"ID","callback_url":""})"},
    {"with-an-older-site-and-a-warning", 200, accepted,
        R"({"uuid":"ID","error":null,"status":"done","payload":{"total":160.0,"fns_site":"www.nalog.ru",
        "fn_number":"9999078900006364","fiscal_document_number":29414,
        "fiscal_document_attribute":3449555941},"warnings":{"callback_url":"w"},"external_id":"ID"})"},
};

std::string of(const Receipt& receipt, std::string text)
{
    for (std::size_t at = text.find("ID\""); at != std::string::npos; at = text.find("ID\"", at + 1)) {
        if (text[at - 1] == '"')
            text.replace(at, 2, receipt.id);
    }
    return text;
}

// Answers each receipt by its row.
class Shapes
{
public:
    Shapes()
        : server([this](Peer& peer, const std::string& request) { answer(peer, request); })
    {
    }

    [[nodiscard]] QString url() const { return QString::fromStdString(server.url()) + u"/possystem/v4/"_s; }

private:
    void answer(Peer& peer, const std::string& request)
    {
        if (request.find("/getToken ") != std::string::npos)
            return peer.answer(200, token);
        const auto* receipt = std::ranges::find_if(
            receipts, [&](const Receipt& one) { return request.find(one.id) != std::string::npos; });
        if (receipt == std::end(receipts))
            return peer.answer(500, "{}");
        if (request.starts_with("POST"))
            return peer.answer(receipt->status, of(*receipt, receipt->registration));
        const std::scoped_lock lock(guard);
        const bool first = ++asked[receipt->id] == 1;
        peer.answer(200, of(*receipt, first ? receipt->report : done));
    }

    std::mutex guard;
    std::map<std::string, int> asked;
    RawServer server;
};

TEST(ShapeOfAnAnswer, DoesNotChangeThatAReceiptIsRegistered)
{
    const Shapes service;
    const Shop shop(service.url());
    QStringList ids;
    QStringList expected;
    for (const Receipt& receipt : receipts) {
        ids << QString::fromLatin1(receipt.id);
        expected << ids.last() + u" registered"_s;
    }
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts(ids)});
    EXPECT_EQ(sold.columns({u"id"_s, u"outcome"_s}), expected) << sold.err.toStdString();
    EXPECT_EQ(sold.exitCode, 0);
}

TEST(ShapeOfAnAnswer, DoesNotChangeWhatIsSaidOfAWrongPassword)
{
    constexpr std::pair<int, const char*> shapes[] = {
        {401, R"({"error":{"error_id":"e","code":12,"text":"t","type":"system"},"timestamp":"t"})"},
        {400, R"({"error":{"error_id":"e","code":12,"text":"t","type":"system"},"timestamp":"t"})"},
        {401, R"({"error":{"error_id":"e","code":12,"text":"t","type":"system"},"status":"fail"})"},
    };
    for (const auto& [status, body] : shapes) {
        const Service service([&](Service::Request& request) { request.answer(status, body); });
        const Shop shop(service.url());
        const Ran sold = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s})});
        EXPECT_THAT(sold.err.toStdString(), testing::HasSubstr("Неверный логин или пароль")) << body;
        EXPECT_EQ(sold.exitCode, 1) << status << body;
    }
}

} // namespace
