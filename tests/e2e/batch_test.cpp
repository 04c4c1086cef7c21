#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <string>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

using Call = Service::Call;
using testing::EndsWith;
using testing::HasSubstr;

QStringList ids(int count, const char* prefix)
{
    QStringList list;
    for (int i = 1; i <= count; ++i)
        list << QString::fromLatin1(prefix) + QString::number(i);
    return list;
}

TEST(Batch, OfFiftyReceiptsIsRegisteredInOrder)
{
    const EmulatorProcess emulator;
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts(ids(50, "r"))});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    QStringList expected;
    for (int i = 1; i <= 50; ++i)
        expected << u"%1 r%1 registered"_s.arg(i);
    EXPECT_EQ(sold.columns({u"line"_s, u"id"_s, u"outcome"_s}), expected);
    EXPECT_EQ(sold.err, u"Receipts: 50. Registered: 50, refused: 0, unknown: 0.\n"_s);
}

TEST(Batch, StopsAfterAnUnknownOutcome)
{
    const EmulatorProcess emulator;
    emulator.addFault(
        R"("endpoint":"sell","effect":"close","phase":"after","match":{"external_id":"r3","next":1})");
    const Shop shop(emulator.url());
    const QString file = shop.receipts(ids(5, "r"));
    const Ran stopped = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_EQ(stopped.columns({u"id"_s, u"outcome"_s}),
        (QStringList{u"r1 registered"_s, u"r2 registered"_s, u"r3 unknown"_s}));
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr("Running the same file again is safe"));
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr("Receipts not sent: 2."));
    EXPECT_EQ(stopped.unreached(), (QStringList{u"r4"_s, u"r5"_s}));
    EXPECT_EQ(stopped.lineWith(u"summary"_s).value(u"summary"_s).toObject(),
        (QJsonObject{{u"receipts"_s, 5}, {u"registered"_s, 2}, {u"incomplete"_s, 0}, {u"refused"_s, 0},
            {u"unknown"_s, 1}, {u"notSent"_s, 2}, {u"exitStatus"_s, 4}}));

    const Ran again = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(again.columns({u"id"_s, u"outcome"_s, u"recovered"_s}),
        (QStringList{u"r1 registered true"_s, u"r2 registered true"_s, u"r3 registered true"_s,
            u"r4 registered -"_s, u"r5 registered -"_s}));
}

// The service answers for the token and the first receipt and is gone before the second.
TEST(Batch, StopsWhenAReceiptCannotBeSent)
{
    Service* self = nullptr;
    std::atomic<int> sells = 0;
    Service service([&](Service::Request& request) {
        switch (request.call()) {
        case Call::Token:
            request.answer(200, R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})");
            return;
        case Call::Sell:
            ++sells;
            request.answer(200, R"({"uuid":"u-1","status":"wait","error":null})");
            return;
        case Call::Report:
            self->refuseFurther();
            request.answerLast(200,
                R"({"uuid":"u-1","external_id":"r1","status":"done","error":null,"payload":{"total":160.0,
                "fn_number":"9999078900006364","fiscal_document_number":29414,"fiscal_document_attribute":3449555941}})");
        }
    });
    self = &service;
    const Shop shop(service.url());
    const Ran stopped = shop.frhost({u"sell"_s, shop.receipts(ids(3, "r"))});
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_EQ(stopped.columns({u"id"_s, u"outcome"_s}), (QStringList{u"r1 registered"_s, u"r2 unknown"_s}));
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr("r2: Not sent, no connection"));
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr("This run has not sent the receipt."));
    EXPECT_EQ(sells, 1);
}

constexpr auto restNotSent = "Receipts not sent: 2.";

TEST(Batch, StopsWhereTheServiceRefusesTheAccount)
{
    struct Row
    {
        const char* code;
        const char* advice;
    };
    const Row rows[] = {
        {"12", "Correct login and password in the configuration."},
        {"13", "Correct login and password in the configuration."},
        {"14", "The account is blocked: ask the service."},
        {"20", "Correct groupCode, or login and password, in the configuration."},
        {"21", "correct groupCode in the configuration."},
    };
    for (const Row& row : rows) {
        const EmulatorProcess emulator;
        emulator.addFault(
            QByteArray(R"("endpoint":"sell","effect":"error","match":{"after":1},"code":)") + row.code);
        const Shop shop(emulator.url());
        const Ran stopped = shop.frhost({u"sell"_s, shop.receipts(ids(4, "r"))});
        EXPECT_EQ(stopped.exitCode, 3) << row.code;
        EXPECT_EQ(
            stopped.columns({u"id"_s, u"outcome"_s}), (QStringList{u"r1 registered"_s, u"r2 refused"_s}))
            << row.code;
        EXPECT_THAT(stopped.err.toStdString(), HasSubstr(row.advice));
        EXPECT_THAT(stopped.err.toStdString(), HasSubstr(restNotSent));
        EXPECT_EQ(stopped.out.count(u"\"next\":\"account\""_s), 3) << "nobody runs the rest again before";
    }
}

TEST(Batch, StopsWhereTheServiceKnowsNoTokenAnyMore)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":10,"match":{"after":1})");
    const Shop shop(emulator.url());
    const QString file = shop.receipts(ids(4, "r"));
    const Ran stopped = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(stopped.exitCode, 4);
    EXPECT_EQ(stopped.columns({u"id"_s, u"outcome"_s}), (QStringList{u"r1 registered"_s, u"r2 unknown"_s}));
    EXPECT_THAT(stopped.err.toStdString(), HasSubstr(restNotSent));
    EXPECT_EQ(emulator.calls(), u"token sell report sell token sell"_s) << "a new token is tried once";
    emulator.clearFaults();
    EXPECT_EQ(shop.frhost({u"sell"_s, file}).columns({u"id"_s, u"outcome"_s}),
        (QStringList{u"r1 registered"_s, u"r2 registered"_s, u"r3 registered"_s, u"r4 registered"_s}));
}

TEST(Batch, ContinuesWithANewTokenWhereTheServiceDoesNotKnowTheOldOne)
{
    const EmulatorProcess emulator;
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":10,"match":{"after":1,"next":1})");
    const Shop shop(emulator.url());
    const Ran sold = shop.frhost({u"sell"_s, shop.receipts(ids(3, "r"))});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns({u"outcome"_s}), QStringList(3, u"registered"_s));
    EXPECT_EQ(emulator.calls().count(u"token"_s), 2);
}

TEST(Batch, ContinuesAfterIncompleteEvidence)
{
    const EmulatorProcess emulator;
    emulator.addFault(
        R"("endpoint":"report","effect":"without-key","key":"payload","match":{"external_id":"r2"})");
    const Shop shop(emulator.url());
    const QString file = shop.receipts(ids(3, "r"));
    const Ran sold = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(sold.exitCode, 5);
    EXPECT_EQ(sold.columns({u"id"_s, u"outcome"_s}),
        (QStringList{u"r1 registered"_s, u"r2 incomplete"_s, u"r3 registered"_s}));
    EXPECT_THAT(sold.err.toStdString(),
        HasSubstr(
            "r2: The service says that the receipt is registered, but its answer has no valid payload.total, "
            "payload.fiscal_document_number, payload.fn_number, payload.fiscal_document_attribute. Do NOT "
            "sell "
            "it under a new id. Running the same file again is safe and may fetch the missing evidence.\n"));
    // The three are alike, and that of r2 is not proven.
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("r3 has the same content as r2"));
    EXPECT_THAT(sold.err.toStdString(),
        EndsWith(
            "Receipts: 3. Registered: 2, refused: 0, unknown: 0.\nRegistered, evidence incomplete: 1.\n"));
    emulator.clearFaults();
    const Ran again = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.columns({u"outcome"_s, u"recovered"_s}), QStringList(3, u"registered true"_s));
}

constexpr auto token = R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})";

// The receipts of the file once the service is asked for a token, which is after they were checked.
struct Change
{
    const char* name;
    QStringList ids;
    int sent;
};

class ChangedFile : public testing::TestWithParam<Change>
{
};

TEST_P(ChangedFile, EndsTheRunWithATotalAndNeverWithSuccess)
{
    std::atomic<int> sells = 0;
    const Shop* till = nullptr;
    const Service service([&](Service::Request& request) {
        if (request.call() == Call::Token) {
            std::ignore = till->receipts(GetParam().ids);
            request.answer(200, token);
            return;
        }
        ++sells;
        request.answer(200, R"({"uuid":"u","status":"wait","error":null})");
    });
    const Shop shop(service.url());
    till = &shop;
    const QString file = shop.receipts({u"r1"_s, u"r2"_s});
    const Ran ran = shop.frhost({u"send"_s, file});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_EQ(sells, GetParam().sent);
    EXPECT_EQ(ran.lines().size(), GetParam().sent);
    EXPECT_THAT(ran.err.toStdString(),
        HasSubstr(file.toStdString() + ": the file has changed since it was checked; the rest was not sent"));
    EXPECT_THAT(ran.err.toStdString(),
        HasSubstr("Receipts: 2. Accepted: " + std::to_string(GetParam().sent) + ", refused: 0, unknown: 0."));
}

INSTANTIATE_TEST_SUITE_P(By, ChangedFile,
    testing::Values(Change{"AVanishedReceipt", {u"r1"_s}, 1},
        Change{"AReplacedReceipt", {u"r1"_s, u"r3"_s}, 1},
        Change{"AnAppendedReceipt", {u"r1"_s, u"r2"_s, u"r3"_s}, 2}, Change{"LosingAll", {}, 0}),
    [](const auto& change) { return change.param.name; });

TEST(ChangedFile, StillEndsWithTheStatusOfARefusalBeforeIt)
{
    const Shop* till = nullptr;
    const Service service([&](Service::Request& request) {
        if (request.call() == Call::Token) {
            std::ignore = till->receipts({u"r1"_s});
            request.answer(200, token);
            return;
        }
        request.answer(
            400, R"({"status":"fail","error":{"error_id":"e","code":32,"text":"t","type":"system"}})");
    });
    const Shop shop(service.url());
    till = &shop;
    const Ran ran = shop.frhost({u"sell"_s, shop.receipts({u"r1"_s, u"r2"_s})});
    EXPECT_EQ(ran.exitCode, 3);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("the file has changed since it was checked"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts: 2. Registered: 0, refused: 1, unknown: 0."));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("Receipts not sent: 1."));
}

TEST(EndlessInput, IsRefusedAndLeavesNoCopy)
{
    const EmulatorProcess emulator;
    const Shop shop(emulator.url());
    const QTemporaryDir copies;
    const QString endless = u"TMPDIR=%1 exec \"$@\" </dev/zero"_s.arg(copies.path());
    const Ran ran = run(u"sh"_s,
        QStringList{u"-c"_s, endless, u"sh"_s, frhostProgram()} + shop.arguments({u"sell"_s, u"-"_s}));
    EXPECT_EQ(ran.exitCode, 2);
    EXPECT_EQ(ran.err,
        u"-: more than 256 MiB, the most that is read from standard input or a pipe. Nothing was "
        u"sent. Put the receipts into a file.\n"_s);
    EXPECT_EQ(emulator.calls(), QString());
    EXPECT_TRUE(QDir(copies.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// The largest resident set of a running process so far, in KiB; nullopt if it has ended.
std::optional<long> peakOf(qint64 process)
{
    QFile file(u"/proc/%1/status"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    static const QRegularExpression peak(u"VmHWM:\\s*(\\d+) kB"_s);
    const auto match = peak.match(QString::fromUtf8(file.readAll()));
    return match.hasMatch() ? std::optional(match.captured(1).toLong()) : std::nullopt;
}

// The peak of frhost while it composes so many receipts. When it is read for the last time, all receipts but
// the last few have been composed, because the pipe of its output holds 64 KiB.
long peakWhileComposing(int count)
{
    const Shop shop(u"http://127.0.0.1:1/"_s);
    Process frhost(frhostProgram(), {u"compose"_s, shop.receipts(ids(count, "till-7-"))});
    long peak = 0;
    qsizetype lines = 0;
    for (QByteArray more = frhost.moreOutput(); !more.isEmpty(); more = frhost.moreOutput()) {
        peak = peakOf(frhost.id()).value_or(peak);
        lines += more.count('\n');
    }
    EXPECT_EQ(lines, count);
    return peak;
}

TEST(Batch, OfAnySizeIsReadInTheSameMemory)
{
    const long few = peakWhileComposing(200);
    const long many = peakWhileComposing(20000);
    EXPECT_GT(few, 0);
    EXPECT_LT(many - few, 2048) << "KiB more for 20,000 receipts, a file of 5 MB";
    RecordProperty("KiB_for_200", std::to_string(few));
    RecordProperty("KiB_for_20000", std::to_string(many));
}
#endif

} // namespace
