#include "tests/e2e/tables/faults.h"

#include "tests/e2e/support/emulatorprocess.h"
#include "tests/queue/road/till.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

QString nameOf(const FaultRow& row)
{
    return QString::fromLatin1(row.name);
}

QJsonObject faultOf(const FaultRow& row)
{
    return QJsonDocument::fromJson(QByteArray("{") + row.fault + '}').object();
}

// A fault of the token hits the register and not a receipt; and which calls a fault hits is not the queue's.
bool concernsReceipt(const FaultRow& row)
{
    const QJsonObject fault = faultOf(row);
    const QJsonObject match = fault.value("match"_L1).toObject();
    return fault.value("endpoint"_L1) != "token"_L1 && !match.contains("external_id"_L1) &&
           !match.contains("login"_L1) && !match.contains("group"_L1);
}

std::vector<FaultRow> rowsOfReceipts()
{
    std::vector<FaultRow> rows;
    std::ranges::copy_if(faultRows(), std::back_inserter(rows), concernsReceipt);
    return rows;
}

// The faults of all rows, each for the receipt that has its name.
QByteArray faultsOf(const std::vector<FaultRow>& rows)
{
    QJsonArray faults;
    for (const FaultRow& row : rows) {
        QJsonObject fault = faultOf(row);
        QJsonObject match = fault.value("match"_L1).toObject();
        match.insert("external_id"_L1, nameOf(row));
        fault.insert("match"_L1, match);
        faults.append(fault);
    }
    return QJsonDocument(faults).toJson();
}

// The last two columns of the table, "registered -".
QString summary(const QJsonObject& line)
{
    return line.value("outcome"_L1).toString() + (line.contains("recovered"_L1) ? u" true"_s : u" -"_s);
}

QString withoutStatus(const char* column)
{
    return QString::fromLatin1(column).section(u' ', 1);
}

bool isAbout(const FaultRow& row, const char* advice)
{
    return QByteArray(row.advice).contains(advice);
}

// What the journal calls the end of the first attempt: whether the receipt is finished with it.
QString endFor(const FaultRow& row)
{
    const QString meanwhile = withoutStatus(row.meanwhile);
    // A fault of the account is not one of the receipt.
    const bool isRefused = meanwhile.startsWith("refused"_L1) && !isAbout(row, "groupCode");
    return meanwhile.startsWith("registered"_L1) || isRefused ? u"finished"_s : u"returned"_s;
}

// A receipt that is registered, or whose id is used up, is not sent again.
QString finalFor(const FaultRow& row)
{
    const QString meanwhile = withoutStatus(row.meanwhile);
    const bool isDone = meanwhile.startsWith("registered"_L1) || isAbout(row, "new id");
    return isDone ? meanwhile : withoutStatus(row.afterwards);
}

class FaultsOnTheRoad : public testing::Test
{
protected:
    FaultsOnTheRoad()
    {
        for (const FaultRow& row : rows)
            ids << nameOf(row);
    }

    // What a person does about those that wait for one.
    void decide() const
    {
        for (const QString& id : ids) {
            const queue::Entry entry = till.entry(id);
            const bool isRefused = entry.state == queue::State::Refused;
            if (isRefused || entry.isHeld) {
                const Ran decided = till.queue({isRefused ? u"retry"_s : u"release"_s, id});
                EXPECT_EQ(decided.exitCode, 0) << decided.err.toStdString();
            }
        }
    }
    void expectOneDocument(const FaultRow& row) const
    {
        const QString document = QString::fromLatin1(row.document).section(u"&wire_requests"_s, 0, 0);
        EXPECT_EQ(emulator.expect(u"external_id=%1&count=1&%2"_s.arg(nameOf(row), document)),
            u"receipts: 1, all as expected"_s);
    }

    const std::vector<FaultRow> rows = rowsOfReceipts();
    QStringList ids;
    const Shop files{QString()};
    EmulatorProcess emulator{{u"--faults"_s, files.file(u"faults.json"_s, faultsOf(rows))}};
    QueueTill till{emulator.url()};
};

// All rows at once; see each of them alone in the test of `sell`.
TEST_F(FaultsOnTheRoad, LeaveOneReceiptAndATrueReport)
{
    ASSERT_EQ(till.add(ids).exitCode, 0);
    ASSERT_TRUE(till.tryOnce(ids));
    for (const FaultRow& row : rows) {
        SCOPED_TRACE(row.name);
        const queue::Event first = till.firstEnd(nameOf(row));
        EXPECT_EQ(summary(QJsonDocument::fromJson(first.detail).object()), withoutStatus(row.meanwhile));
        EXPECT_EQ(first.name, endFor(row));
    }

    emulator.clearFaults();
    decide();
    const Ran worked = till.work();
    EXPECT_EQ(worked.exitCode, 0) << worked.err.toStdString();
    const Ran waited = till.queue(QStringList{u"wait"_s} + ids);
    EXPECT_EQ(waited.exitCode, 3) << "some have failed";
    ASSERT_EQ(waited.lines().size(), ids.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(summary(waited.lines().at(static_cast<qsizetype>(i))), finalFor(rows[i]));
        expectOneDocument(rows[i]);
    }
    EXPECT_EQ(
        emulator.expect(u"count=%1"_s.arg(ids.size())), u"receipts: %1, all as expected"_s.arg(ids.size()));
    const Ran audit = till.queue({u"audit"_s});
    EXPECT_EQ(audit.exitCode, 0) << audit.err.toStdString();
    EXPECT_EQ(audit.columns({u"accepted"_s, u"underWay"_s, u"lost"_s, u"doubled"_s}),
        QStringList{u"%1 0 0 0"_s.arg(ids.size())});
}

} // namespace
