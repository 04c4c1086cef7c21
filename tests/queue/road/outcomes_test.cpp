#include "tests/e2e/tables/outcomes.h"

#include "tests/queue/road/till.h"
#include "tests/support/wire/rawserver.h"

#include <QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// The answer of a row about the receipt that has its name.
std::string of(const OutcomeRow& row, std::string answer)
{
    replaceAll(answer, "\"r1\"", std::string("\"") + row.name + '"');
    replaceAll(answer, "\"u-1\"", std::string("\"u-") + row.name + '"');
    return answer;
}

void answer(Peer& peer, const std::string& request)
{
    if (request.find("/getToken ") != std::string::npos)
        return peer.answer(200, R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})");
    const bool isReceipt = request.starts_with("POST");
    const auto rows = outcomeRows();
    const auto row = std::ranges::find_if(rows, [&](const OutcomeRow& one) {
        const std::string name = one.name;
        return request.find(isReceipt ? '"' + name + '"' : "/report/u-" + name + ' ') != std::string::npos;
    });
    if (row == rows.end())
        return peer.answer(500, "{}");
    isReceipt ? peer.answer(row->status, of(*row, row->registration))
              : peer.answer(200, of(*row, row->report));
}

queue::State stateFor(const OutcomeRow& row)
{
    using queue::State;
    const QByteArray outcome = row.outcome;
    if (outcome == "registered")
        return State::Registered;
    if (outcome == "incomplete")
        return State::Incomplete;
    if (outcome == "unknown")
        return State::Unknown;
    const QByteArray advice = row.advice;
    // A fault of the account is not one of the receipt.
    if (advice.contains("groupCode"))
        return State::Queued;
    return advice.contains("new id and run") ? State::Failed : State::Refused;
}

QString nextFor(queue::State state, const QString& nextOfASale)
{
    if (state == queue::State::Registered)
        return u"none"_s;
    return nextOfASale == "new-id"_L1 ? u"retry-new-id"_s : u"retry"_s;
}

TEST(OutcomesOnTheRoad, AreThoseOfASale)
{
    const RawServer server(answer);
    const QueueTill till(QString::fromStdString(server.url()) + u"/possystem/v4/"_s);
    QStringList ids;
    for (const OutcomeRow& row : outcomeRows())
        ids << QString::fromLatin1(row.name);
    ASSERT_EQ(till.add(ids).exitCode, 0);
    ASSERT_TRUE(till.tryOnce(ids));
    for (const OutcomeRow& row : outcomeRows()) {
        SCOPED_TRACE(row.name);
        const QString id = QString::fromLatin1(row.name);
        const QJsonObject first = QJsonDocument::fromJson(till.firstEnd(id).detail).object();
        EXPECT_EQ(first.value("outcome"_L1).toString(), QString::fromLatin1(row.outcome));
        EXPECT_EQ(first.contains("error"_L1), row.exitCode != 0);
        EXPECT_EQ(till.firstEnd(id).name, isFinished(stateFor(row)) ? u"finished"_s : u"returned"_s);
        if (!isFinished(stateFor(row)))
            continue;
        EXPECT_EQ(till.entry(id).state, stateFor(row));
        const Ran waited = till.queue({u"wait"_s, id});
        EXPECT_EQ(waited.exitCode, row.exitCode);
        QJsonObject line = first;
        line["next"_L1] = nextFor(stateFor(row), first.value("next"_L1).toString());
        EXPECT_EQ(waited.lines(), QList<QJsonObject>{line});
    }
}

} // namespace
