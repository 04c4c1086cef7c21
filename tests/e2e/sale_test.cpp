#include "tests/e2e/support/road.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The emulator that all of these tests share.
QString emulatorUrl()
{
    QFile file(QStringLiteral(EMULATOR_URL_FILE));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("run these tests through ctest, which starts the emulator");
    return QString::fromUtf8(file.readAll().trimmed());
}

class Sale : public testing::Test
{
protected:
    Shop shop{emulatorUrl()};
};

// The same by both roads. Every receipt is sold once, so that each road has ids of its own.
class SaleBy : public testing::TestWithParam<Road>
{
protected:
    SaleBy() { shop.configureQueue(u"store"_s, u"queue.db"_s); }

    [[nodiscard]] Ran sell(const QStringList& files, const QByteArray& input = {}) const
    {
        return ::sell(shop, GetParam(), files, input);
    }
    [[nodiscard]] static QString own(const char* id)
    {
        return QLatin1StringView(id) + (GetParam() == Road::Sell ? u"-sold"_s : u"-queued"_s);
    }

    Shop shop{emulatorUrl()};
};

INSTANTIATE_TEST_SUITE_P(Of, SaleBy, testing::Values(Road::Sell, Road::Queue), roadName);

const QStringList outcome{u"id"_s, u"outcome"_s};

TEST_P(SaleBy, TurnsAReceiptFileIntoAFiscalResult)
{
    const Ran sold = sell({shop.file(u"r.json"_s, receiptLine(own("sale-1")))});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    ASSERT_EQ(sold.lines().size(), 1);
    const QJsonObject line = sold.lines().first();
    EXPECT_EQ(line.value(u"outcome"_s).toString(), u"registered"_s);
    EXPECT_FALSE(line.contains(u"recovered"_s));
    EXPECT_FALSE(line.contains(u"error"_s));
    EXPECT_FALSE(line.value(u"uuid"_s).toString().isEmpty());
    EXPECT_TRUE(line.value(u"receiptUrl"_s).toString().startsWith(u"http"_s));
    const QJsonObject fiscal = line.value(u"fiscal"_s).toObject();
    EXPECT_EQ(fiscal.value(u"total"_s).toDouble(), 160);
    EXPECT_EQ(fiscal.value(u"taxSystem"_s).toString(), u"Общая"_s);
    EXPECT_GT(fiscal.value(u"fiscalDocumentNumber"_s).toInt(), 0);
    EXPECT_EQ(fiscal.value(u"fnNumber"_s).toString().size(), 16);
    EXPECT_EQ(fiscal.value(u"registrationNumber"_s).toString().size(), 16);
    EXPECT_FALSE(fiscal.value(u"shiftNumber"_s).toString().isEmpty());
    const QString sign = fiscal.value(u"fiscalSign"_s).toString();
    EXPECT_GT(sign.toLongLong(), 1LL << 31) << "more than 32 bits arrive intact";
    const QString dateTime = fiscal.value(u"dateTime"_s).toString();
    EXPECT_TRUE(
        QRegularExpression(u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d$"_s).match(dateTime).hasMatch())
        << dateTime.toStdString();
    EXPECT_EQ(line.value(u"qr"_s).toString(),
        u"t=%1&s=160.00&fn=%2&i=%3&fp=%4&n=1"_s.arg(dateTime.first(16).remove(u'-').remove(u':'),
            fiscal.value(u"fnNumber"_s).toString(),
            QString::number(fiscal.value(u"fiscalDocumentNumber"_s).toInt()), sign));
}

TEST_F(Sale, IsTriedInMoscowTimeWithEverythingLogged)
{
    EXPECT_EQ(QDateTime::currentDateTime().offsetFromUtc(), 3 * 3600);
    EXPECT_EQ(qgetenv("E2E_LOG_EVERYTHING"), "1");
}

// The clocks of emulator, program and test show the same local time. The service names no seconds.
TEST_F(Sale, IsDatedInLocalTime)
{
    const QDateTime before = QDateTime::currentDateTime().addSecs(-60);
    const Ran sold = shop.frhost({u"sell"_s, u"-"_s}, receiptLine(u"dated-1"_s));
    const QString dateTime = sold.lines().value(0).value(u"fiscal"_s)[u"dateTime"].toString();
    const QDateTime dated = QDateTime::fromString(dateTime, Qt::ISODate);
    EXPECT_TRUE(before <= dated && dated <= QDateTime::currentDateTime()) << dateTime.toStdString();
}

TEST_P(SaleBy, AcceptsEveryExample)
{
    const Ran sold = sell({QStringLiteral(EXAMPLES "/plain.json"), QStringLiteral(EXAMPLES "/agent.json"),
        QStringLiteral(EXAMPLES "/marked.json"), QStringLiteral(EXAMPLES "/mixed.json"),
        QStringLiteral(EXAMPLES "/batch.jsonl")});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.lines().size(), 9);
    for (const QString& row : sold.columns({u"outcome"_s}))
        EXPECT_EQ(row, u"registered"_s);
}

TEST_P(SaleBy, ReadsReceiptsFromStandardInput)
{
    const Ran sold = sell({u"-"_s}, receiptLine(own("stdin-1")) + receiptLine(own("stdin-2")));
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns({u"file"_s, u"line"_s, u"id"_s}),
        (QStringList{u"- 1 "_s + own("stdin-1"), u"- 2 "_s + own("stdin-2")}));
}

TEST_F(Sale, OfAKnownIdReturnsTheFirstResult)
{
    const QString file = shop.receipts({u"twice-1"_s});
    const Ran first = shop.frhost({u"sell"_s, file});
    const Ran second = shop.frhost({u"sell"_s, file});
    EXPECT_EQ(second.exitCode, 0) << second.err.toStdString();
    QJsonObject expected = first.lines().value(0);
    expected.insert(u"recovered"_s, true);
    expected.insert(u"compared"_s, u"content"_s);
    EXPECT_EQ(second.lines(), QList<QJsonObject>{expected});
}

TEST_P(SaleBy, UnderTheIdOfAnotherReceiptIsRefused)
{
    EXPECT_EQ(
        shop.frhost({u"sell"_s, u"--no-journal"_s, u"-"_s}, receiptLine(own("mixed-up-1"), 160)).exitCode, 0);
    const Ran other = sell({u"-"_s}, receiptLine(own("mixed-up-1"), 160.01));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_EQ(other.columns(outcome), QStringList{own("mixed-up-1") + u" refused"_s});
    EXPECT_EQ(other.lines().first().value(u"error"_s).toObject(),
        (QJsonObject{{u"code"_s, 33},
            {u"message"_s, u"The id already belongs to another receipt, registered with the total 160.00 "
                           u"instead of 160.01"_s}}));
    EXPECT_THAT(other.err.toStdString(),
        HasSubstr(GetParam() == Road::Sell
                      ? "This sale is NOT registered. Give it an id of its own and run it again."
                      : "This sale is NOT registered. Send it under an id of its own: frhost queue retry"));
}

TEST_P(SaleBy, ContinuesAfterARefusedReceipt)
{
    const QByteArray wrong = receiptLine(own("refused-2")).replace("\"sum\":160.00}]", "\"sum\":100.00}]");
    const Ran sold = sell({u"-"_s}, receiptLine(own("refused-1")) + wrong + receiptLine(own("refused-3")));
    EXPECT_EQ(sold.exitCode, 3);
    EXPECT_EQ(
        sold.columns(outcome), (QStringList{own("refused-1") + u" registered"_s,
                                   own("refused-2") + u" refused"_s, own("refused-3") + u" registered"_s}));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Nothing was registered."));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Receipts: 3. Registered: 2, refused: 1, unknown: 0."));
    EXPECT_EQ(sold.lineWith(u"summary"_s).value(u"summary"_s)[u"exitStatus"].toInt(), 3);
    const QJsonObject error = sold.lines().value(1).value(u"error"_s).toObject();
    EXPECT_EQ(error.value(u"code"_s).toInt(), 32);
    EXPECT_EQ(error.value(u"message"_s).toString(), u"Некорректные данные в запросе"_s);
    EXPECT_THAT(error.value(u"detail"_s).toString().toStdString(), HasSubstr("receipt"));
    EXPECT_FALSE(error.value(u"errorId"_s).toString().isEmpty());
    EXPECT_EQ(sold.lines().at(1).value(u"next"_s).toString(),
        GetParam() == Road::Queue ? u"retry"_s : u"correct"_s);
}

TEST_P(SaleBy, SendsNothingIfOneReceiptIsInvalid)
{
    const Ran sold = sell({u"-"_s}, receiptLine(own("nothing-1")) + "{\"id\":\"nothing-2\"}\n");
    EXPECT_EQ(sold.exitCode, 2);
    EXPECT_TRUE(sold.lines().isEmpty());
    const QJsonObject failure = sold.lineWith(u"failure"_s);
    EXPECT_EQ(failure.value(u"next"_s).toString(), u"correct"_s);
    EXPECT_EQ(failure.value(u"sent"_s), QJsonValue(false));
    // What is only handed over has no outcomes to count.
    const int status = GetParam() == Road::Sell ? 2 : -1;
    EXPECT_EQ(sold.lineWith(u"summary"_s).value(u"summary"_s)[u"exitStatus"].toInt(-1), status);
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("-:2: the key \"requisites\" is missing"));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Nothing was sent."));
    const Ran again = sell({u"-"_s}, receiptLine(own("nothing-1")));
    EXPECT_EQ(again.columns({u"outcome"_s, u"recovered"_s}), QStringList{u"registered -"_s});
}

TEST_F(Sale, CanBeSentFirstAndAskedAboutLater)
{
    const Ran sent = shop.frhost({u"send"_s, u"-"_s}, receiptLine(u"sent-1"_s));
    EXPECT_EQ(sent.exitCode, 0) << sent.err.toStdString();
    ASSERT_EQ(sent.lines().size(), 1);
    EXPECT_EQ(sent.lines().first().keys(),
        (QStringList{u"file"_s, u"id"_s, u"line"_s, u"next"_s, u"sent"_s, u"uuid"_s}));
    const QString uuid = sent.lines().first().value(u"uuid"_s).toString();
    const QStringList status{u"status"_s, u"external_id"_s};
    Ran asked = shop.frhost({u"info"_s, uuid});
    while (asked.exitCode == 0 && asked.columns({u"status"_s}) == QStringList{u"wait"_s})
        asked = shop.frhost({u"info"_s, uuid});
    EXPECT_EQ(asked.exitCode, 0) << asked.err.toStdString();
    EXPECT_EQ(asked.columns(status), QStringList{u"done sent-1"_s});
    const Ran again = shop.frhost({u"send"_s, u"-"_s}, receiptLine(u"sent-1"_s));
    EXPECT_EQ(again.columns({u"uuid"_s, u"recovered"_s}), QStringList{uuid + u" true"_s});
}

TEST_F(Sale, ThatWasSentCanBeCollected)
{
    const Ran sent = shop.frhost({u"send"_s, u"-"_s}, receiptLine(u"collected-1"_s));
    const QString uuid = sent.lines().value(0).value(u"uuid"_s).toString();
    const Ran collected = shop.frhost({u"collect"_s, uuid, u"no-such-document"_s});
    EXPECT_EQ(collected.exitCode, 4);
    const QStringList shown{u"line"_s, u"id"_s, u"uuid"_s, u"outcome"_s, u"sent"_s, u"next"_s};
    EXPECT_EQ(collected.columns(shown), (QStringList{u"1 collected-1 %1 registered false none"_s.arg(uuid),
                                            u"2 - no-such-document unknown false correct"_s}));
    EXPECT_EQ(collected.lines().value(1).value(u"error"_s)[u"code"].toInt(), 30);
    EXPECT_THAT(collected.err.toStdString(), HasSubstr("Check the uuid and groupCode"));
    const Ran sold = shop.frhost({u"sell"_s, u"-"_s}, receiptLine(u"collected-1"_s));
    QJsonObject fiscal = sold.lines().value(0).value(u"fiscal"_s).toObject();
    fiscal.remove(u"taxSystem"_s);
    EXPECT_EQ(collected.lines().value(0).value(u"fiscal"_s).toObject(), fiscal);
    EXPECT_EQ(collected.lines().value(0).value(u"qr"_s), sold.lines().value(0).value(u"qr"_s));
}

TEST_F(Sale, CannotBeAskedAboutUnderAnUnknownUuid)
{
    const Ran asked = shop.frhost({u"info"_s, u"no-such-document"_s});
    EXPECT_EQ(asked.exitCode, 3);
    EXPECT_EQ(asked.lines().value(0).value(u"error"_s).toObject().value(u"code"_s).toInt(), 30);
    EXPECT_THAT(asked.err.toStdString(), HasSubstr("Документ с указанным идентификатором не найден"));
    EXPECT_EQ(shop.frhost({u"info"_s, u"../../getToken"_s}).exitCode, 1);
}

TEST_F(Sale, NeedsTheRightPassword)
{
    shop.configure(u"password"_s, u"wrong-canary"_s);
    for (const QStringList& command : {QStringList{u"check"_s}, QStringList{u"sell"_s, u"-"_s}}) {
        const Ran refused = shop.frhost(command, receiptLine(u"password-1"_s));
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_THAT(refused.err.toStdString(), HasSubstr("Неверный логин или пароль"));
        EXPECT_THAT(refused.err.toStdString(), testing::Not(HasSubstr("canary")));
        EXPECT_EQ(refused.columns({u"connected"_s}),
            command.first() == u"check"_s ? QStringList{u"false"_s} : QStringList());
        const QJsonObject failure = refused.lineWith(u"failure"_s);
        EXPECT_EQ(failure.isEmpty(), command.first() == u"check"_s);
        if (failure.isEmpty())
            continue;
        EXPECT_EQ(failure.value(u"next"_s).toString(), u"account"_s);
        EXPECT_EQ(failure.value(u"failure"_s)[u"code"].toInt(), 12);
        EXPECT_FALSE(failure.value(u"failure"_s)[u"errorId"].toString().isEmpty());
    }
}

TEST_F(Sale, HasAConnectionThatCanBeChecked)
{
    const Ran checked = shop.frhost({u"check"_s});
    EXPECT_EQ(checked.exitCode, 0) << checked.err.toStdString();
    EXPECT_EQ(checked.columns({u"connected"_s, u"url"_s}), QStringList{u"true "_s + emulatorUrl()});
    // The same is looked at, and the machine.
    const Ran looked = shop.frhost({u"doctor"_s});
    EXPECT_EQ(looked.exitCode, 0) << looked.err.toStdString();
    EXPECT_GT(looked.lineWith(u"findings"_s).value(u"findings"_s).toArray().size(),
        checked.lineWith(u"findings"_s).value(u"findings"_s).toArray().size());
}

TEST_F(Sale, NeedsTheRightGroup)
{
    shop.configure(u"groupCode"_s, u"another"_s);
    const Ran checked = shop.frhost({u"check"_s});
    EXPECT_EQ(checked.exitCode, 1);
    EXPECT_EQ(checked.columns({u"connected"_s}), QStringList{u"true"_s});
    EXPECT_THAT(checked.err.toStdString(), HasSubstr("The service does not know the group another"));
    EXPECT_THAT(checked.out.toStdString(), HasSubstr(R"("grade":"good","subject":"Login")"));
}

} // namespace
