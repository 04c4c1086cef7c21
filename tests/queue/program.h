#pragma once

#include "tests/e2e/support/emulatorprocess.h"
#include "tests/e2e/support/shop.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

/// A till with a queue in a file of its own.
class QueueProgram : public testing::Test
{
protected:
    static inline const QStringList outcome{QStringLiteral("id"), QStringLiteral("outcome")};
    static inline const QStringList states{QStringLiteral("id"), QStringLiteral("state")};

    QueueProgram() { shop.configureQueue(QStringLiteral("store"), QStringLiteral("queue.db")); }

    [[nodiscard]] Ran queue(const QStringList& arguments, const QByteArray& input = {}) const
    {
        return shop.frhost(QStringList{QStringLiteral("queue")} + arguments, input);
    }
    [[nodiscard]] Ran add(const QByteArray& receipts) const
    {
        return queue({QStringLiteral("add"), QStringLiteral("-")}, receipts);
    }
    [[nodiscard]] Ran work() const
    {
        return queue({QStringLiteral("work"), QStringLiteral("--until-empty")});
    }
    [[nodiscard]] QStringList listed() const { return queue({QStringLiteral("list")}).columns(states); }
    [[nodiscard]] QStringList results() const { return queue({QStringLiteral("results")}).columns(outcome); }
    /// Accepted, registered, under way, lost, doubled and recovered.
    [[nodiscard]] QString audit() const
    {
        return queue({QStringLiteral("audit")})
            .columns({QStringLiteral("accepted"), QStringLiteral("registered"), QStringLiteral("underWay"),
                QStringLiteral("lost"), QStringLiteral("doubled"), QStringLiteral("recovered")})
            .join(u' ');
    }
    [[nodiscard]] Running worker() const
    {
        return {frhostProgram(), shop.arguments({QStringLiteral("queue"), QStringLiteral("work")})};
    }
    [[nodiscard]] qsizetype sellsSeen() const { return emulator.calls().count(QStringLiteral("sell")); }
    /// The receipts that the service has been sent, in their order.
    [[nodiscard]] QString sent() const
    {
        static const QRegularExpression id(QStringLiteral("\"external_id\":\"([^\"]*)\""));
        QStringList ids;
        for (const QRegularExpressionMatch& match : id.globalMatch(emulator.requests()))
            ids << match.captured(1);
        return ids.join(u' ');
    }
    [[nodiscard]] static QByteArray receipts(int count)
    {
        QByteArray text;
        for (int i = 1; i <= count; ++i)
            text += receiptLine(QStringLiteral("r%1").arg(i));
        return text;
    }

    EmulatorProcess emulator;
    Shop shop{emulator.url()};
};
