#include "hostcli/terminal/resultreport.h"
#include "tests/sweep/replies/oracle.h"
#include "tests/sweep/replies/replygenerator.h"
#include "tests/sweep/replies/scriptedservice.h"
#include "till/sale/registrar.h"
#include "till/sale/session.h"

#include <QJsonArray>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::string_view_literals;
using nlohmann::json;

namespace {

using Act = till::ReceiptResult (till::Registrar::*)(const till::QueuedReceipt&);

till::QueuedReceipt receipt()
{
    const QJsonObject requisite{{u"tag"_s, 1008}, {u"value"_s, u"buyer@example.com"_s}};
    const QJsonObject position{{u"name"_s, u"Milk"_s}, {u"price"_s, honest::total}, {u"quantity"_s, 1},
        {u"sum"_s, honest::total}, {u"taxCode"_s, 1}};
    const QJsonObject payment{{u"type"_s, 1}, {u"sum"_s, honest::total}};
    till::QueuedReceipt queued;
    queued.receipt =
        till::toReceipt({{u"id"_s, QString::fromLatin1(honest::id)}, {u"requisites"_s, QJsonArray{requisite}},
            {u"positions"_s, QJsonArray{position}}, {u"payments"_s, QJsonArray{payment}}});
    return queued;
}

till::RegisterConfig configuration(const std::string& url)
{
    till::RegisterConfig config;
    config.settings = {{u"url"_s, QString::fromStdString(url)}, {u"login"_s, u"shop"_s},
        {u"password"_s, u"secret"_s}, {u"groupCode"_s, u"shop_1"_s}, {u"inn"_s, u"7700000000"_s},
        {u"email"_s, u"shop@example.com"_s}, {u"paymentAddress"_s, u"https://shop.example.com"_s}};
    return config;
}

struct Statement
{
    json line;
    std::vector<GivenReply> replies;
};

// What the till says of the receipt after a conversation with this service.
Statement stated(const Script& script, Act act)
{
    ScriptedService service(script);
    till::Session session(configuration(service.url()), till::pluginAt(QStringLiteral(PLUGIN)));
    session.connect();
    till::Registrar registrar(session.fiscalRegister(), session.transport());
    const till::ReceiptResult result = (registrar.*act)(receipt());
    return {json::parse(frhost::toJsonLine(result).toStdString()), service.given()};
}

Script script(std::vector<json> sell, std::vector<json> report)
{
    Script made;
    made.token = {replyOf(honest::token())};
    std::ranges::transform(sell, std::back_inserter(made.sell), replyOf);
    std::ranges::transform(report, std::back_inserter(made.report), replyOf);
    return made;
}

json outcomeOf(const Script& script, Act act)
{
    const Statement statement = stated(script, act);
    EXPECT_THAT(contradictions(statement.line, statement.replies), testing::IsEmpty());
    return statement.line.value("outcome", json());
}

// Keeps the driver's log lines, thousands of them, off the terminal.
class Quiet : public testing::Test
{
protected:
    Quiet()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }
    ~Quiet() override { qInstallMessageHandler(nullptr); }
};

class Replies : public Quiet, public testing::WithParamInterface<const char*>
{
};

class Oracle : public Quiet
{
};

TEST_P(Replies, OfAnyKindLeadToNoFalseStatement)
{
    const Act act = GetParam() == "Sell"sv ? &till::Registrar::sell : &till::Registrar::send;
    EXPECT_TRUE(rc::check([act] {
        const Script script = *anyScript();
        const Statement statement = stated(script, act);
        const auto wrong = contradictions(statement.line, statement.replies);
        RC_TAG(statement.line.value("outcome", "accepted"));
        RC_LOG() << statement.line.dump();
        RC_ASSERT(wrong == std::vector<std::string>());
    }));
}

INSTANTIATE_TEST_SUITE_P(
    To, Replies, testing::Values("Sell", "Send"), [](const auto& act) { return std::string(act.param); });

// That the property above is not true of everything.
TEST_F(Oracle, KnowsTheTruth)
{
    const auto sell = &till::Registrar::sell;
    const auto send = &till::Registrar::send;
    const json accepted = honest::accepted();
    const json refused = honest::refused(32);
    const json failed = honest::failed(502);
    EXPECT_EQ(outcomeOf(script({accepted}, {honest::done()}), sell), "registered");
    EXPECT_EQ(outcomeOf(script({accepted}, {honest::waiting(), honest::done()}), sell), "registered");
    EXPECT_EQ(outcomeOf(script({accepted}, std::vector(9, failed)), sell), "refused");
    EXPECT_EQ(outcomeOf(script(std::vector(9, refused), {}), sell), "refused");
    EXPECT_EQ(outcomeOf(script({}, {}), sell), "unknown");
    EXPECT_EQ(outcomeOf(script({accepted}, {}), send), json());
}

TEST_F(Oracle, FindsLies)
{
    const auto lies = [](const json& line, std::vector<json> sell, std::vector<json> report) {
        std::vector<GivenReply> replies;
        for (const json& answer : sell)
            replies.push_back({Call::Sell, replyOf(answer)});
        for (const json& answer : report)
            replies.push_back({Call::Report, replyOf(answer)});
        return !contradictions(line, replies).empty();
    };
    const json registered{{"outcome", "registered"}, {"uuid", honest::uuid}};
    const json fiscal{{"fiscalDocumentNumber", 0}};
    const json accepted = honest::accepted();
    json withEmptyError = honest::done();
    withEmptyError["error"] = json::object();
    json withDouble = honest::done();
    withDouble["payload"]["fiscal_document_number"] = 5.0;
    json withError = honest::done();
    withError["error"] = json::array();
    EXPECT_FALSE(lies(registered, {accepted}, {honest::done()}));
    EXPECT_FALSE(lies(registered, {accepted}, {withEmptyError}));
    EXPECT_FALSE(lies(registered, {accepted}, {withDouble}));
    EXPECT_FALSE(lies(
        {{"fiscal", {{"fiscalDocumentNumber", "5"}}}, {"outcome", "registered"}}, {accepted}, {withDouble}));
    EXPECT_TRUE(lies(registered, {accepted}, {withError}));
    EXPECT_TRUE(lies(registered, {accepted}, {honest::waiting()}));
    EXPECT_TRUE(lies(registered, {accepted}, {}));
    for (const char* key : {"status", "external_id", "uuid", "payload"}) {
        json done = honest::done();
        done.erase(key);
        EXPECT_TRUE(lies(registered, {accepted}, {done})) << key;
    }
    for (const char* key : {"total", "fn_number", "fiscal_document_number", "fiscal_document_attribute"}) {
        json done = honest::done();
        done["payload"][key] = "?";
        EXPECT_TRUE(lies(registered, {accepted}, {done})) << key;
        done["payload"].erase(key);
        EXPECT_TRUE(lies(registered, {accepted}, {done})) << key;
    }
    EXPECT_TRUE(lies({{"outcome", "registered"}, {"fiscal", fiscal}}, {accepted}, {honest::done()}));
    EXPECT_TRUE(lies({{"outcome", "incomplete"}}, {accepted}, {honest::waiting()}));
    EXPECT_TRUE(lies({{"outcome", "unknown"}}, {accepted}, {honest::done()}));
    EXPECT_TRUE(lies({{"outcome", "refused"}}, {accepted}, {honest::failed(502)}));
    EXPECT_TRUE(lies({{"outcome", "refused"}}, {honest::refused(32)}, {}));
    EXPECT_TRUE(lies({{"outcome", "refused"}}, {accepted}, {honest::failed(502), honest::done()}));
    EXPECT_TRUE(lies({{"uuid", "another"}}, {accepted}, {}));
    EXPECT_TRUE(
        lies({{"outcome", "unknown"}, {"error", {{"message", "Not sent, no connection"}}}}, {accepted}, {}));
}

} // namespace
