#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;

constexpr auto safe = "Running the same file again is safe";
constexpr auto newId = "Give the sale a new id and run it again";
constexpr auto correctGroup = "Correct groupCode";
constexpr auto noToken = "holds no token. Try again later";
constexpr auto ownTokens = "The service does not accept the tokens that it issues";
constexpr auto correct = "Correct the receipt and run it again under the same id";
constexpr auto notSent = "No receipt was sent";
constexpr auto nothing = "";

constexpr auto registered = "0 registered -";
constexpr auto recovered = "0 registered true";
constexpr auto incomplete = "5 incomplete -";
constexpr auto refused = "3 refused -";
constexpr auto unknown = "4 unknown -";
constexpr auto noService = "4";
constexpr auto noLogin = "1";

// A row of the table: how the emulator misbehaves, and what frhost reports of the sale meanwhile and, from
// the same file, afterwards: its exit code, the outcome and whether it was recovered.
struct Row
{
    const char* name;
    const char* fault;
    const char* meanwhile;
    const char* advice;
    const char* afterwards;
    const char* document = "total=160.00&status=done";
};

// Not here because they only end at the client's limit of 30 seconds: `silent`, and `wrong-length` with a
// length that is too large. Because they never end: `never` of a sell or of every report.
const Row rows[] = {
    {"TokenErrorOfThePassword", R"("endpoint":"token","effect":"error","code":12)", noLogin, nothing,
        registered},
    {"TokenErrorOfTheServer", R"("endpoint":"token","effect":"error","code":50)", noService, notSent,
        registered},
    {"TokenHtml", R"("endpoint":"token","effect":"html")", noService, notSent, registered},
    {"TokenEmpty", R"("endpoint":"token","effect":"empty")", noService, notSent, registered},
    {"TokenNotJson", R"("endpoint":"token","effect":"not-json")", noService, notSent, registered},
    {"TokenTruncated", R"("endpoint":"token","effect":"truncated")", noService, notSent, registered},
    {"TokenLengthTooSmall", R"("endpoint":"token","effect":"wrong-length","bytes":-16)", noService, notSent,
        registered},
    {"TokenDrip", R"("endpoint":"token","effect":"drip","milliseconds":1)", registered, nothing, recovered},
    {"TokenDelay", R"("endpoint":"token","effect":"delay","milliseconds":300)", registered, nothing,
        recovered},
    {"TokenCloseBefore", R"("endpoint":"token","effect":"close","phase":"before")", noService, notSent,
        registered},
    {"TokenCloseAfter", R"("endpoint":"token","effect":"close","phase":"after")", noService, notSent,
        registered},
    {"TokenResetBefore", R"("endpoint":"token","effect":"reset-before")", noService, notSent, registered},
    {"TokenResetDuring", R"("endpoint":"token","effect":"reset-during")", noService, notSent, registered},
    {"TokenResetAfter", R"("endpoint":"token","effect":"reset-after")", registered, nothing, recovered},
    {"TokenOldOnce", R"("endpoint":"token","effect":"old-token","match":{"next":1})", registered, nothing,
        recovered},
    {"TokenWithoutToken", R"("endpoint":"token","effect":"without-key","key":"token")", noService, noToken,
        registered},

    {"SellErrorOfTheServerBefore", R"("endpoint":"sell","effect":"error","phase":"before")", unknown, safe,
        registered},
    {"SellErrorOfTheServerAfter", R"("endpoint":"sell","effect":"error","phase":"after")", unknown, safe,
        recovered},
    {"SellErrorOfTheReceipt", R"("endpoint":"sell","effect":"error","code":32)", refused, correct,
        registered},
    {"SellErrorOfTheReceiptOnce", R"("endpoint":"sell","effect":"error","code":32,"match":{"next":1})",
        registered, nothing, recovered},
    {"SellErrorOfTheReceiptAfterOnce",
        R"("endpoint":"sell","effect":"error","phase":"after","code":32,"match":{"next":1})", recovered,
        nothing, recovered},
    {"SellErrorOfTheOperationAfterOnce",
        R"("endpoint":"sell","effect":"error","phase":"after","code":31,"match":{"next":1})", recovered,
        nothing, recovered},
    // No client can see that this is not true; the next run does.
    {"SellErrorOfTheReceiptAfter", R"("endpoint":"sell","effect":"error","phase":"after","code":32)", refused,
        correct, recovered},
    {"SellErrorOfTheGroup", R"("endpoint":"sell","effect":"error","code":20)", refused, correctGroup,
        registered},
    {"SellErrorOfAKnownIdOnce",
        R"("endpoint":"sell","effect":"error","phase":"after","code":33,"match":{"next":1})", recovered,
        nothing, recovered},
    {"SellErrorOfAReceiptInProgressOnce",
        R"("endpoint":"sell","effect":"error","phase":"after","code":34,"match":{"next":1})", recovered,
        nothing, recovered},
    {"SellErrorOfAnUnknownToken", R"("endpoint":"sell","effect":"error","code":10)", unknown, safe,
        registered},
    {"SellErrorOfAnUnknownTokenOnce", R"("endpoint":"sell","effect":"error","code":10,"match":{"next":1})",
        registered, nothing, recovered},
    {"SellErrorOfTheToken", R"("endpoint":"sell","effect":"error","code":11)", unknown, ownTokens,
        registered},
    {"SellErrorOfTheTokenAfter", R"("endpoint":"sell","effect":"error","phase":"after","code":11)", unknown,
        ownTokens, recovered},
    {"SellErrorOfAnUnknownKind", R"("endpoint":"sell","effect":"error","code":0)", unknown, safe, registered},
    {"SellErrorOfTheTokenOnce", R"("endpoint":"sell","effect":"error","code":11,"match":{"next":1})",
        registered, nothing, recovered},
    {"SellHtmlBefore", R"("endpoint":"sell","effect":"html","phase":"before")", unknown, safe, registered},
    {"SellHtmlAfter", R"("endpoint":"sell","effect":"html","phase":"after","status":200)", unknown, safe,
        recovered},
    {"SellEmptyBefore", R"("endpoint":"sell","effect":"empty","phase":"before")", unknown, safe, registered},
    {"SellEmptyAfter", R"("endpoint":"sell","effect":"empty","phase":"after")", unknown, safe, recovered},
    {"SellNotJsonBefore", R"("endpoint":"sell","effect":"not-json","phase":"before")", unknown, safe,
        registered},
    {"SellNotJsonAfter", R"("endpoint":"sell","effect":"not-json","phase":"after")", unknown, safe,
        recovered},
    {"SellTruncatedBefore", R"("endpoint":"sell","effect":"truncated","phase":"before")", unknown, safe,
        registered},
    {"SellTruncatedAfter", R"("endpoint":"sell","effect":"truncated","phase":"after")", unknown, safe,
        recovered},
    {"SellLengthTooSmall", R"("endpoint":"sell","effect":"wrong-length","bytes":-16)", unknown, safe,
        recovered},
    {"SellDrip", R"("endpoint":"sell","effect":"drip","milliseconds":1)", registered, nothing, recovered},
    {"SellDelay", R"("endpoint":"sell","effect":"delay","milliseconds":300)", registered, nothing, recovered},
    {"SellCloseBefore", R"("endpoint":"sell","effect":"close","phase":"before")", unknown, safe, registered},
    {"SellCloseAfter", R"("endpoint":"sell","effect":"close","phase":"after")", unknown, safe, recovered},
    {"SellResetInsteadOfTheAnswer", R"("endpoint":"sell","effect":"reset-before","phase":"before")", unknown,
        safe, registered},
    {"SellResetInsteadOfTheAnswerAfter", R"("endpoint":"sell","effect":"reset-before","phase":"after")",
        unknown, safe, recovered},
    {"SellResetDuring", R"("endpoint":"sell","effect":"reset-during")", unknown, safe, recovered},
    {"SellResetAfter", R"("endpoint":"sell","effect":"reset-after")", registered, nothing, recovered},
    {"SellOtherDocument", R"("endpoint":"sell","effect":"other-document")", unknown, safe, recovered},
    {"SellWithoutUuid", R"("endpoint":"sell","effect":"without-key","key":"uuid")", unknown, safe, recovered},
    {"SellFailOfTheDriver", R"("endpoint":"sell","effect":"fail","type":"driver")", refused, newId, refused,
        "status=fail"},
    {"SellFailOfTheAgent", R"("endpoint":"sell","effect":"fail","type":"agent")", refused, newId, refused,
        "status=fail"},
    {"SellFailOfTheTimeout", R"("endpoint":"sell","effect":"fail","type":"timeout")", refused, newId, refused,
        "status=fail"},
    {"SellFailOfTheSystem", R"("endpoint":"sell","effect":"fail","type":"system")", refused, newId, refused,
        "status=fail"},
    {"SellFailUnknown", R"("endpoint":"sell","effect":"fail","type":"unknown")", refused, newId, refused,
        "status=fail"},

    {"ReportErrorOfTheServer", R"("endpoint":"report","effect":"error","code":50)", unknown, safe, recovered},
    {"ReportErrorOfTheDocument", R"("endpoint":"report","effect":"error","code":30)", unknown, safe,
        recovered},
    {"ReportErrorOfTheGroup", R"("endpoint":"report","effect":"error","code":20)", unknown, safe, recovered},
    {"ReportErrorOfTheToken", R"("endpoint":"report","effect":"error","code":11)", unknown, safe, recovered},
    {"ReportErrorOfAnUnknownToken", R"("endpoint":"report","effect":"error","code":10)", unknown, safe,
        recovered},
    {"ReportErrorOfAnUnknownTokenTwice",
        R"("endpoint":"report","effect":"error","code":10,"match":{"next":2})", registered, nothing,
        recovered},
    {"ReportErrorOfTheTokenTwice", R"("endpoint":"report","effect":"error","code":11,"match":{"next":2})",
        registered, nothing, recovered},
    {"ReportHtml", R"("endpoint":"report","effect":"html")", unknown, safe, recovered},
    {"ReportEmpty", R"("endpoint":"report","effect":"empty")", unknown, safe, recovered},
    {"ReportNotJson", R"("endpoint":"report","effect":"not-json")", unknown, safe, recovered},
    {"ReportTruncated", R"("endpoint":"report","effect":"truncated")", unknown, safe, recovered},
    {"ReportLengthTooSmall", R"("endpoint":"report","effect":"wrong-length","bytes":-16)", unknown, safe,
        recovered},
    {"ReportDrip", R"("endpoint":"report","effect":"drip","milliseconds":1)", registered, nothing, recovered},
    {"ReportDelay", R"("endpoint":"report","effect":"delay","milliseconds":300)", registered, nothing,
        recovered},
    {"ReportClose", R"("endpoint":"report","effect":"close")", unknown, safe, recovered},
    {"ReportCloseTwice", R"("endpoint":"report","effect":"close","match":{"next":2})", registered, nothing,
        recovered},
    {"ReportResetInsteadOfTheAnswer", R"("endpoint":"report","effect":"reset-before")", unknown, safe,
        recovered},
    {"ReportResetDuring", R"("endpoint":"report","effect":"reset-during")", unknown, safe, recovered},
    {"ReportResetAfter", R"("endpoint":"report","effect":"reset-after")", registered, nothing, recovered},
    {"ReportOtherDocument", R"("endpoint":"report","effect":"other-document")", unknown, safe, recovered},
    {"ReportWithoutStatus", R"("endpoint":"report","effect":"without-key","key":"status")", unknown, safe,
        recovered},
    {"ReportWithoutPayload", R"("endpoint":"report","effect":"without-key","key":"payload")", incomplete,
        safe, recovered},
    {"ReportWithoutTotal", R"("endpoint":"report","effect":"without-key","key":"payload.total")", incomplete,
        safe, recovered},
    {"ReportWithoutDocumentNumber",
        R"("endpoint":"report","effect":"without-key","key":"payload.fiscal_document_number")", incomplete,
        safe, recovered},
    {"ReportWithoutStorageNumber", R"("endpoint":"report","effect":"without-key","key":"payload.fn_number")",
        incomplete, safe, recovered},
    {"ReportWithoutSign",
        R"("endpoint":"report","effect":"without-key","key":"payload.fiscal_document_attribute")", incomplete,
        safe, recovered},
    {"ReportWithoutId", R"("endpoint":"report","effect":"without-key","key":"external_id")", incomplete, safe,
        recovered},
    {"ReportWithoutUuid", R"("endpoint":"report","effect":"without-key","key":"uuid")", incomplete, safe,
        recovered},
    {"ReportWithoutShift", R"("endpoint":"report","effect":"without-key","key":"payload.shift_number")",
        registered, nothing, recovered},
    {"ReportNeverTwice", R"("endpoint":"report","effect":"never","match":{"next":2})", registered, nothing,
        recovered},
    // A run posts a receipt once, also one that turns out to be known.
    {"SellOnce", R"("endpoint":"sell","effect":"reset-during","match":{"next":1})", unknown, safe, recovered,
        "total=160.00&status=done&wire_requests=2"},
    {"SellOfThisLogin", R"("endpoint":"sell","effect":"close","phase":"after","match":{"login":"shop"})",
        unknown, safe, recovered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfAnotherLogin", R"("endpoint":"sell","effect":"close","match":{"login":"shop2"})", registered,
        nothing, recovered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfThisGroup", R"("endpoint":"sell","effect":"close","match":{"group":"shop_1"})", unknown, safe,
        registered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfAnotherGroup", R"("endpoint":"sell","effect":"close","match":{"group":"shop_2"})", registered,
        nothing, recovered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfThisId", R"("endpoint":"sell","effect":"error","phase":"after","match":{"external_id":"r?"})",
        unknown, safe, recovered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfAnotherId", R"("endpoint":"sell","effect":"close","match":{"external_id":"r1-*"})", registered,
        nothing, recovered, "total=160.00&status=done&wire_requests=2"},
    {"SellOfAnExpiredTokenOnce", R"("endpoint":"sell","effect":"error","code":11,"match":{"next":1})",
        registered, nothing, recovered, "total=160.00&status=done&wire_requests=3"},
    {"TokenOfAnotherLogin", R"("endpoint":"token","effect":"close","match":{"login":"shop2"})", registered,
        nothing, recovered, "total=160.00&status=done&wire_requests=2"},
    {"TokenOfThisLogin", R"("endpoint":"token","effect":"close","match":{"login":"shop"})", noService,
        notSent, registered, "total=160.00&status=done&wire_requests=1"},
    {"ReportOfThisId", R"("endpoint":"report","effect":"html","match":{"external_id":"r1"})", unknown, safe,
        recovered, "total=160.00&status=done&wire_requests=2"},
    {"ReportEverySecond", R"("endpoint":"report","effect":"not-json","match":{"every":2})", registered,
        nothing, recovered, "total=160.00&status=done&wire_requests=2"},

    {"ReportFailOnce", R"("endpoint":"report","effect":"fail","match":{"next":1})", registered, nothing,
        recovered},
    {"ReportFailThreeTimes", R"("endpoint":"report","effect":"fail","match":{"next":3})", registered, nothing,
        recovered},
    {"ReportFailOfTheAgentOnce", R"("endpoint":"report","effect":"fail","type":"agent","match":{"next":1})",
        registered, nothing, recovered},
    {"ReportFailWithTheCodeOfAnExpiredTokenOnce",
        R"("endpoint":"report","effect":"fail","type":"driver","code":11,"match":{"next":1})", registered,
        nothing, recovered},
    // No client can see that this is not true; the next run does.
    {"ReportFail", R"("endpoint":"report","effect":"fail")", refused, newId, recovered},
};

class Fault : public testing::TestWithParam<Row>
{
};

QString summary(const Ran& ran)
{
    return (QStringList{QString::number(ran.exitCode)} + ran.columns({u"outcome"_s, u"recovered"_s}))
        .join(u' ');
}

TEST_P(Fault, LeavesOneReceiptAndATrueReport)
{
    const Row& row = GetParam();
    const EmulatorProcess emulator;
    const Shop shop(emulator.url());
    const QStringList command{u"sell"_s, shop.receipts({u"r1"_s})};

    emulator.addFault(row.fault);
    const Ran meanwhile = shop.frhost(command);
    emulator.clearFaults();
    const Ran afterwards = shop.frhost(command);

    EXPECT_EQ((QStringList{summary(meanwhile), summary(afterwards)}),
        (QStringList{QString::fromLatin1(row.meanwhile), QString::fromLatin1(row.afterwards)}))
        << meanwhile.err.toStdString() << afterwards.err.toStdString();
    EXPECT_THAT(meanwhile.err.toStdString(), HasSubstr(row.advice));
    EXPECT_EQ(meanwhile.lines().value(0).contains(u"fiscal"_s), meanwhile.exitCode == 0);
    EXPECT_EQ(emulator.expect(u"external_id=r1&count=1&"_s + QString::fromLatin1(row.document)),
        u"receipts: 1, all as expected"_s);
    EXPECT_EQ(emulator.expect(u"count=1"_s), u"receipts: 1, all as expected"_s);
}

// A row of the table: which of six receipts a fault hits, and so refuses.
struct Match
{
    const char* name;
    const char* match;
    const char* refusedOnes;
};

const Match matches[] = {
    {"EverySecond", R"({"every":2})", "r2 r4 r6"},
    {"AllAfterFour", R"({"after":4})", "r5 r6"},
    {"TheNextTwo", R"({"next":2})", "r1 r2"},
    {"EverySecondAfterOneButTwoAtMost", R"({"after":1,"every":2,"next":2})", "r3 r5"},
    {"AnId", R"({"external_id":"r4"})", "r4"},
    {"APatternOfThisLoginAndGroup", R"({"external_id":"r?","login":"shop","group":"shop_1","every":3})",
        "r3 r6"},
};

class FaultOfMany : public testing::TestWithParam<Match>
{
};

TEST_P(FaultOfMany, HitsExactlyTheMatchingReceipts)
{
    const EmulatorProcess emulator;
    emulator.addFault(QByteArray(R"("endpoint":"sell","effect":"fail","match":)") + GetParam().match);
    const Shop shop(emulator.url());
    QStringList ids;
    for (int i = 1; i <= 6; ++i)
        ids << u"r%1"_s.arg(i);
    const Ran ran = shop.frhost({u"sell"_s, shop.receipts(ids)});

    const QStringList refusedOnes = QString::fromLatin1(GetParam().refusedOnes).split(u' ');
    QStringList expected;
    for (const QString& id : ids)
        expected << id + (refusedOnes.contains(id) ? u" refused"_s : u" registered"_s);
    EXPECT_EQ(ran.columns({u"id"_s, u"outcome"_s}), expected) << ran.err.toStdString();
    EXPECT_EQ(emulator.expect(u"external_id=r*&operation=sell&count=6&wire_requests=1"_s),
        u"receipts: 6, all as expected"_s);
    for (const QString& id : ids) {
        const QString status = refusedOnes.contains(id) ? u"fail"_s : u"done"_s;
        EXPECT_EQ(emulator.expect(u"external_id=%1&status=%2"_s.arg(id, status)),
            u"receipts: 1, all as expected"_s);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, FaultOfMany, testing::ValuesIn(matches), [](const auto& of) { return std::string(of.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Of, Fault, testing::ValuesIn(rows), [](const auto& of) { return std::string(of.param.name); });

// A service that answers a login and nothing else.
TEST(Collection, TellsOfEachDocumentThatItDoesNotReach)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"report","effect":"close")");
    Shop shop(emulator.url());
    const Ran silent = shop.frhost({u"collect"_s, u"a"_s, u"b"_s, u"c"_s});
    EXPECT_EQ(silent.exitCode, 4);
    const QStringList shown{u"line"_s, u"uuid"_s, u"outcome"_s, u"sent"_s, u"next"_s};
    EXPECT_EQ(silent.columns(shown), QStringList{u"1 a unknown false rerun"_s});
    EXPECT_EQ(silent.unreached().size(), 2);
    EXPECT_EQ(silent.lineWith(u"summary"_s).value(u"summary"_s)[u"notSent"].toInt(), 2);
    EXPECT_THAT(silent.err.toStdString(), HasSubstr("No answer from the service: the connection broke off."));
    EXPECT_THAT(silent.err.toStdString(), HasSubstr("Not asked about: 2."));
    shop.configure(u"password"_s, u"wrong-canary"_s);
    const Ran rejected = shop.frhost({u"collect"_s, u"a"_s, u"b"_s});
    EXPECT_EQ(rejected.exitCode, 1);
    EXPECT_EQ(rejected.unreached().size(), 2);
    EXPECT_EQ(rejected.out.count(u"\"next\":\"account\""_s), 3);
}

} // namespace
