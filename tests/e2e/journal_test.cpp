#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/service.h"
#include "tests/e2e/support/shop.h"
#include "tests/support/wire/rawserver.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::HasSubstr;
using testing::Not;

const QStringList outcome{u"id"_s, u"outcome"_s};

constexpr auto lost = R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":1})";

// A shop whose journal is a file of its own.
class JournalOfASale : public testing::Test
{
protected:
    [[nodiscard]] QString journal() const { return folder.filePath(u"journal.db"_s); }
    [[nodiscard]] Ran run(const char* command, const QByteArray& receipts, QStringList options = {}) const
    {
        if (options.isEmpty())
            options = {u"--journal"_s, journal()};
        return shop.frhost(QStringList{QString::fromLatin1(command), u"-"_s} + options, receipts);
    }
    [[nodiscard]] Ran sell(const QByteArray& receipts, const QStringList& options = {}) const
    {
        return run("sell", receipts, options);
    }
    // The same receipt with other goods for the same money.
    [[nodiscard]] static QByteArray otherGoods(const char* id)
    {
        return receiptLine(QString::fromLatin1(id)).replace("Молоко", "Кефир");
    }
    [[nodiscard]] qsizetype sellsSeen() const { return emulator.calls().count(u"sell"_s); }

    QTemporaryDir folder;
    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};

TEST_F(JournalOfASale, RefusesOtherGoodsUnderARegisteredIdBeforeAnythingIsSent)
{
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 0);
    const Ran other = sell(otherGoods("r1") + receiptLine(u"r2"_s));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_EQ(other.columns(outcome), (QStringList{u"r1 refused"_s, u"r2 registered"_s}));
    EXPECT_EQ(other.lines().first().value(u"error"_s).toObject().keys(), QStringList{u"message"_s});
    EXPECT_THAT(other.lines().first().value(u"error"_s)[u"message"].toString().toStdString(),
        testing::MatchesRegex(
            "Another receipt was sent under this id on ..\\...\\..... ..:..:.. \\(-:1\\): it is "
            "registered"));
    EXPECT_THAT(
        other.err.toStdString(), HasSubstr("This receipt was not sent. If it is another sale, give it an id "
                                           "of its own"));
    EXPECT_EQ(sellsSeen(), 2) << "r1 once, r2 once";
}

TEST_F(JournalOfASale, RefusesOtherGoodsUnderAnIdWhoseOutcomeIsUnknown)
{
    emulator.addFault(lost);
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).columns(outcome), QStringList{u"r1 unknown"_s});
    const Ran other = sell(otherGoods("r1"));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_THAT(other.err.toStdString(), HasSubstr("its outcome is unknown"));
    EXPECT_THAT(other.err.toStdString(), HasSubstr("first run it exactly as it was sent"));
    EXPECT_EQ(sellsSeen(), 1);
    const Ran same = sell(receiptLine(u"r1"_s));
    EXPECT_EQ(same.columns({u"outcome"_s, u"recovered"_s, u"compared"_s}),
        QStringList{u"registered true content"_s});
}

TEST_F(JournalOfASale, RefusesOtherGoodsUnderAnIdThatWasOnlySent)
{
    EXPECT_EQ(run("send", receiptLine(u"r1"_s)).exitCode, 0);
    const Ran other = run("send", otherGoods("r1"));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_THAT(other.err.toStdString(), HasSubstr("the service has accepted it"));
    EXPECT_EQ(sellsSeen(), 1);
    EXPECT_EQ(run("send", receiptLine(u"r1"_s)).columns({u"recovered"_s, u"compared"_s}),
        QStringList{u"true content"_s});
}

TEST_F(JournalOfASale, RefusesOtherGoodsUnderAnIdThatFailed)
{
    emulator.addFault(R"("endpoint":"sell","effect":"fail")");
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).columns(outcome), QStringList{u"r1 refused"_s});
    const Ran other = sell(otherGoods("r1"));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_THAT(other.err.toStdString(), HasSubstr("the service could not register it"));
    EXPECT_THAT(other.err.toStdString(), HasSubstr("Give the sale a new id"));
    EXPECT_EQ(sellsSeen(), 1);
}

TEST_F(JournalOfASale, LetsARefusedReceiptBeCorrected)
{
    const QByteArray wrong = receiptLine(u"r1"_s).replace("\"sum\":160.00}]", "\"sum\":100.00}]");
    EXPECT_EQ(sell(wrong).columns(outcome), QStringList{u"r1 refused"_s});
    const Ran corrected = sell(receiptLine(u"r1"_s));
    EXPECT_EQ(corrected.columns({u"outcome"_s, u"recovered"_s}), QStringList{u"registered -"_s});
}

// A fault of the account does not say that the first attempt was refused, too.
TEST_F(JournalOfASale, StillHoldsForAnIdThatALaterRunCouldNotAskFor)
{
    emulator.addFault(lost);
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).columns(outcome), QStringList{u"r1 unknown"_s});
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":20,"match":{"next":3})");
    const Ran refused = sell(receiptLine(u"r1"_s));
    EXPECT_EQ(refused.columns(outcome), QStringList{u"r1 unknown"_s});
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("Do NOT give it a new id"));
    EXPECT_EQ(sell(otherGoods("r1")).exitCode, 3);
    EXPECT_EQ(sellsSeen(), 4);
}

// The advice of the first run must not lead to a second sale in the next one.
TEST_F(JournalOfASale, KeepsAnIncompleteReceiptIncompleteWhenItIsRunAgain)
{
    bool isKnown = false;
    const Service liar([&](Service::Request& request) {
        switch (request.call()) {
        case Service::Call::Token:
            return request.answer(200, R"({"error":null,"token":"t"})");
        case Service::Call::Sell:
            return request.answer(200,
                std::exchange(isKnown, true)
                    ? R"({"uuid":"u","status":"wait","error":{"error_id":"e","code":33,"text":"t","type":"system"}})"
                    : R"({"uuid":"u","status":"wait","error":null})");
        case Service::Call::Report:
            return request.answer(
                200, R"({"uuid":"u","external_id":"r1","status":"done","error":null,"payload":
                {"total":5.0,"fn_number":"9999078900006364","shift_number":17,"fiscal_document_number":12,
                "receipt_datetime":"15.01.2020 21:10:05","fiscal_document_attribute":3449555941,
                "ecr_registration_number":"0000111118041361"}})");
        }
    });
    const Shop cheated(liar.url());
    for (int run = 0; run < 2; ++run) {
        const Ran sold = cheated.frhost({u"sell"_s, u"-"_s, u"--journal"_s, journal()}, receiptLine(u"r1"_s));
        EXPECT_EQ(sold.exitCode, 5);
        EXPECT_EQ(sold.columns(outcome), QStringList{u"r1 incomplete"_s});
        EXPECT_THAT(sold.err.toStdString(), HasSubstr("Do NOT sell it under a new id"));
    }
}

TEST_F(JournalOfASale, OutweighsALaterRefusalOfARegisteredReceipt)
{
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 0);
    for (const char* fault :
        {R"("endpoint":"sell","effect":"error","code":32)", R"("endpoint":"sell","effect":"error","code":12)",
            R"("endpoint":"report","effect":"fail","type":"driver")"}) {
        emulator.addFault(fault);
        const Ran again = sell(receiptLine(u"r1"_s));
        EXPECT_EQ(again.exitCode, 4) << fault;
        EXPECT_EQ(again.columns(outcome), QStringList{u"r1 unknown"_s}) << fault;
        EXPECT_THAT(again.err.toStdString(), HasSubstr("it is registered. Do NOT give it a new id")) << fault;
        emulator.clearFaults();
    }
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).columns(outcome), QStringList{u"r1 registered"_s});
}

TEST_F(JournalOfASale, SaysThatOnlyTheTotalWasComparedWhereItDoesNotKnowTheReceipt)
{
    EXPECT_EQ(sell(receiptLine(u"r1"_s), {u"--no-journal"_s}).exitCode, 0);
    // Once more with the journal: equal totals have proved nothing.
    for (const QStringList& options : {QStringList{u"--no-journal"_s}, QStringList(), QStringList()}) {
        const Ran again = sell(receiptLine(u"r1"_s), options);
        EXPECT_EQ(again.columns({u"outcome"_s, u"recovered"_s, u"compared"_s}),
            QStringList{u"registered true total"_s});
    }
    const Ran other = sell(receiptLine(u"r1"_s, 160.01), {u"--no-journal"_s});
    EXPECT_EQ(other.lines().first().value(u"error"_s).toObject(),
        (QJsonObject{{u"code"_s, 33},
            {u"message"_s, u"The id already belongs to another receipt, registered with the total 160.00 "
                           u"instead of 160.01"_s}}));
}

TEST_F(JournalOfASale, WarnsOfANewIdForAReceiptWhoseOutcomeIsUnknown)
{
    emulator.addFault(lost);
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 4);
    const Ran renamed = sell(receiptLine(u"r2"_s));
    EXPECT_EQ(renamed.exitCode, 0);
    EXPECT_THAT(renamed.err.toStdString(), HasSubstr("r2 has the same content as r1, sent on "));
    EXPECT_THAT(renamed.err.toStdString(), HasSubstr("running r1 again shows its outcome"));
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 0);
    EXPECT_THAT(sell(receiptLine(u"r3"_s)).err.toStdString(), Not(HasSubstr("same content")));
}

TEST_F(JournalOfASale, ForgetsAReceiptThatCouldNotBeSent)
{
    // The service answers for the token and closes its doors.
    RawServer* self = nullptr;
    RawServer service([&](Peer& peer, const std::string&) {
        self->refuseFurther();
        peer.answer(
            200, R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})", "Connection: close\r\n");
        peer.close();
    });
    self = &service;
    const Shop offline(QString::fromStdString(service.url()) + u"/possystem/v4/"_s);
    const Ran unsent = offline.frhost({u"sell"_s, u"-"_s, u"--journal"_s, journal()}, receiptLine(u"r1"_s));
    EXPECT_THAT(unsent.err.toStdString(), HasSubstr("Not sent, no connection"));
    EXPECT_THAT(sell(receiptLine(u"r1"_s)).err.toStdString(), Not(HasSubstr("same content")));
    const Ran listed = ::run(u"python3"_s,
        {u"-c"_s,
            u"import sqlite3,sys; print(*[r[0] for r in sqlite3.connect(sys.argv[1]).execute('SELECT state FROM receipts')])"_s,
            journal()});
    EXPECT_EQ(listed.out, u"registered\n"_s) << "of the emulator's register alone";
}

// As when the program ended between the record and the first byte.
TEST_F(JournalOfASale, SaysOnlyThatAReceiptMayHaveBeenSentWhereNothingMoreIsRecorded)
{
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 0);
    EXPECT_EQ(
        ::run(u"python3"_s,
            {u"-c"_s,
                u"import sqlite3,sys; c=sqlite3.connect(sys.argv[1]); c.execute(\"UPDATE receipts SET state='sent'\"); c.commit()"_s,
                journal()})
            .exitCode,
        0);
    EXPECT_THAT(sell(receiptLine(u"r1"_s, 5)).err.toStdString(),
        HasSubstr("Another receipt may have been sent under this id on "));
    EXPECT_THAT(sell(receiptLine(u"r2"_s)).err.toStdString(),
        HasSubstr("r2 has the same content as r1, which may have been sent on "));
    emulator.addFault(R"("endpoint":"sell","effect":"error","code":20)");
    EXPECT_THAT(sell(receiptLine(u"r1"_s)).err.toStdString(),
        HasSubstr("This very receipt may have been sent before, on "));
}

TEST_F(JournalOfASale, TellsOnceOfTheSameContentHoweverOftenAReceiptIsAttempted)
{
    emulator.addFault(R"("endpoint":"sell","effect":"close","phase":"after","match":{"next":2})");
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 4);
    const Ran again = sell(receiptLine(u"r2"_s), {u"--journal"_s, journal(), u"--retry-for"_s, u"1m"_s});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(again.err.count(u"Trying again."_s), 1);
    EXPECT_EQ(again.err.count(u"r2 has the same content as r1"_s), 1);
}

TEST_F(JournalOfASale, ForgetsWhatTheServiceHasForgotten)
{
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).exitCode, 0);
    const QString age =
        u"import sqlite3,sys; c=sqlite3.connect(sys.argv[1]); c.execute(\"UPDATE receipts SET "
        "sent=sent-41*86400\"); c.commit()"_s;
    EXPECT_EQ(::run(u"python3"_s, {u"-c"_s, age, journal()}).exitCode, 0);
    EXPECT_EQ(sell(receiptLine(u"r2"_s)).exitCode, 0);
    const QString ids =
        u"import sqlite3,sys; print(*[r[0] for r in sqlite3.connect(sys.argv[1]).execute('SELECT id FROM receipts')])"_s;
    EXPECT_EQ(::run(u"python3"_s, {u"-c"_s, ids, journal()}).out, u"r2\n"_s);
}

TEST_F(JournalOfASale, ThatCannotBeWrittenKeepsEverythingFromBeingSent)
{
    for (const QString& file : {folder.path(), folder.filePath(u"missing/journal.db"_s)}) {
        const Ran refused = sell(receiptLine(u"r1"_s), {u"--journal"_s, file});
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_EQ(refused.lineWith(u"failure"_s).value(u"next"_s).toString(), u"account"_s);
        EXPECT_TRUE(refused.lines().isEmpty());
        EXPECT_THAT(
            refused.err.toStdString(), HasSubstr(file.toStdString() + ": the journal cannot be used: "));
        EXPECT_THAT(refused.err.toStdString(), HasSubstr("Nothing was sent."));
        EXPECT_THAT(refused.err.toStdString(), HasSubstr("--journal FILE"));
        EXPECT_THAT(refused.err.toStdString(), HasSubstr("--no-journal"));
    }
    EXPECT_EQ(emulator.calls(), QString());
    EXPECT_EQ(sell(receiptLine(u"r1"_s), {u"--no-journal"_s}).exitCode, 0);
}

// Another program that takes the journal's lock and keeps it.
std::unique_ptr<Process> lock(const QString& journal)
{
    auto program = std::make_unique<Process>(
        u"python3"_s, QStringList{u"-c"_s,
                          u"import sqlite3,sys; c=sqlite3.connect(sys.argv[1], isolation_level=None); "
                          u"c.execute('BEGIN IMMEDIATE'); print('locked', flush=True); sys.stdin.read()"_s,
                          journal});
    EXPECT_TRUE(program->moreOutput().startsWith("locked"));
    return program;
}

// The journal fails when this is asked for the first time.
struct Failure
{
    const char* name;
    Service::Call call;
    std::size_t requests;
    QStringList ids;
    const char* accepted;
    const char* unsent;
};

class JournalThatFails : public JournalOfASale, public testing::WithParamInterface<Failure>
{
};

TEST_P(JournalThatFails, EndsTheRunBeforeTheNextReceipt)
{
    EXPECT_EQ(sell(receiptLine(u"r0"_s)).exitCode, 0);
    std::unique_ptr<Process> locking;
    std::size_t requests = 0;
    const Service service([&](Service::Request& request) {
        ++requests;
        if (request.call() == GetParam().call && !locking)
            locking = lock(journal());
        request.answer(200, request.call() == Service::Call::Token
                                ? R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})"
                                : R"({"uuid":"u-1","status":"wait","error":null})");
    });
    const Shop busy(service.url());
    const Ran ended = busy.frhost({u"send"_s, busy.receipts(GetParam().ids), u"--journal"_s, journal()});
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.columns({u"id"_s}).join(u' '), QString::fromLatin1(GetParam().accepted));
    EXPECT_EQ(requests, GetParam().requests);
    EXPECT_THAT(ended.err.toStdString(), HasSubstr("the journal cannot be used: database is locked"));
    EXPECT_THAT(ended.err.toStdString(), HasSubstr("--no-journal"));
    EXPECT_THAT(ended.err.toStdString(), HasSubstr(GetParam().unsent));
}

// The second one is known to be accepted, and only that is not recorded.
INSTANTIATE_TEST_SUITE_P(When, JournalThatFails,
    testing::Values(Failure{"TheFirstReceiptIsNext", Service::Call::Token, 1, {u"r1"_s, u"r2"_s}, "",
                        "Receipts not sent: 2."},
        Failure{"TheLastReceiptIsSent", Service::Call::Sell, 2, {u"r1"_s}, "r1", ""}),
    [](const auto& failure) { return failure.param.name; });

TEST_F(JournalOfASale, IsByDefaultInTheStateFolderOfTheUser)
{
    const QString state = folder.filePath(u"state"_s);
    const Ran sold = ::run(u"env"_s, QStringList{u"XDG_STATE_HOME="_s + state, frhostProgram()} +
                                         shop.arguments({u"sell"_s, shop.receipts({u"r1"_s})}));
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    for (const auto& [path, mode] : {std::pair(u"/frhost"_s, 0700U), {u"/frhost/journal.db"_s, 0600U}}) {
        struct stat status
        {
        };
        ASSERT_EQ(stat((state + path).toLocal8Bit().constData(), &status), 0) << path.toStdString();
        EXPECT_EQ(status.st_mode & 0777U, mode) << path.toStdString();
    }
    const Ran underSystemd =
        ::run(u"env"_s, QStringList{u"STATE_DIRECTORY="_s + folder.path(), frhostProgram()} +
                            shop.arguments({u"sell"_s, shop.receipts({u"r2"_s})}));
    EXPECT_EQ(underSystemd.exitCode, 0) << underSystemd.err.toStdString();
    EXPECT_TRUE(QFile::exists(journal()));
}

TEST_F(JournalOfASale, NeedsAFolder)
{
    const Ran refused =
        ::run(u"env"_s, QStringList{u"-u"_s, u"XDG_STATE_HOME"_s, u"-u"_s, u"HOME"_s, frhostProgram()} +
                            shop.arguments({u"sell"_s, shop.receipts({u"r1"_s})}));
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("There is no folder for the journal"));
    EXPECT_EQ(emulator.calls(), QString());
}

// All begin at once with a journal that does not exist yet.
std::vector<std::unique_ptr<Running>> startAll(
    const Shop& shop, const QString& journal, const std::vector<QString>& files)
{
    std::vector<std::unique_ptr<Running>> all;
    // Once, because it writes the configuration that all of them read.
    const QStringList arguments = shop.arguments({u"sell"_s, u"--journal"_s, journal});
    for (const QString& file : files)
        all.push_back(std::make_unique<Running>(frhostProgram(), arguments + QStringList{file}));
    return all;
}

TEST_F(JournalOfASale, IsSharedByProcesses)
{
    constexpr int processes = 8;
    constexpr int each = 10;
    std::vector<QString> files;
    for (int i = 0; i < processes; ++i) {
        QByteArray receipts;
        for (int j = 0; j < each; ++j)
            receipts += receiptLine(u"p%1-%2"_s.arg(i).arg(j), 100 + i * each + j);
        files.push_back(shop.file(u"p%1.jsonl"_s.arg(i), receipts));
    }
    for (const auto& running : startAll(shop, journal(), files)) {
        const Ran ran = running->end();
        EXPECT_EQ(ran.exitCode, 0) << ran.err.toStdString();
    }
    // Now each of them knows what the others have sent.
    const Ran other = sell(otherGoods("p0-0") + otherGoods("p7-9"));
    EXPECT_EQ(other.columns(outcome), (QStringList{u"p0-0 refused"_s, u"p7-9 refused"_s}));
    EXPECT_THAT(other.err.toStdString(), HasSubstr("Another receipt was sent under this id"));
}

TEST_F(JournalOfASale, LetsOneOfSeveralProcessesHaveAnId)
{
    constexpr int processes = 6;
    std::vector<QString> files;
    for (int i = 0; i < processes; ++i)
        files.push_back(shop.file(u"p%1.jsonl"_s.arg(i), receiptLine(u"r1"_s, 100 + i)));
    int registered = 0;
    for (const auto& running : startAll(shop, journal(), files)) {
        const Ran ran = running->end();
        registered += ran.exitCode == 0 ? 1 : 0;
        EXPECT_TRUE(ran.exitCode == 0 || ran.exitCode == 3) << ran.err.toStdString();
        EXPECT_TRUE(ran.exitCode == 0 || ran.err.contains(u"sent under this id"_s)) << ran.err.toStdString();
    }
    EXPECT_EQ(registered, 1);
    EXPECT_EQ(sellsSeen(), 1);
}

TEST_F(JournalOfASale, SurvivesTheDeathOfTheProgramBetweenRecordAndResult)
{
    emulator.addFault(R"("endpoint":"sell","effect":"silent","phase":"after","match":{"next":1})");
    {
        Running frhost(frhostProgram(),
            shop.arguments({u"sell"_s, shop.receipts({u"r1"_s}), u"--journal"_s, journal()}));
        EXPECT_TRUE(comesTrue([&] { return sellsSeen() == 1; }));
        frhost.signal(SIGKILL);
        std::ignore = frhost.end();
    }
    EXPECT_EQ(sell(otherGoods("r1")).exitCode, 3);
    EXPECT_EQ(sellsSeen(), 1);
    EXPECT_EQ(sell(receiptLine(u"r1"_s)).columns({u"outcome"_s, u"compared"_s}),
        QStringList{u"registered content"_s});
}

} // namespace
