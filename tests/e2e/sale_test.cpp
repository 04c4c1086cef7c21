#include "tests/e2e/support/shop.h"

#include <QFile>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

const QStringList outcome{QStringLiteral("id"), QStringLiteral("outcome")};

TEST_F(Sale, GoesFromAReceiptFileToItsFiscalResult)
{
    const Ran sold = shop.frhost(
        {QStringLiteral("sell"), shop.file(QStringLiteral("r.json"), receiptLine(QStringLiteral("sale-1")))});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    ASSERT_EQ(sold.lines().size(), 1);
    const QJsonObject line = sold.lines().first();
    EXPECT_EQ(line.value(QStringLiteral("outcome")).toString(), QStringLiteral("registered"));
    EXPECT_FALSE(line.contains(QStringLiteral("recovered")));
    EXPECT_FALSE(line.contains(QStringLiteral("error")));
    EXPECT_FALSE(line.value(QStringLiteral("uuid")).toString().isEmpty());
    EXPECT_TRUE(line.value(QStringLiteral("receiptUrl")).toString().startsWith(QStringLiteral("http")));
    const QJsonObject fiscal = line.value(QStringLiteral("fiscal")).toObject();
    EXPECT_EQ(fiscal.value(QStringLiteral("total")).toDouble(), 160);
    EXPECT_EQ(fiscal.value(QStringLiteral("taxSystem")).toString(), QStringLiteral("Общая"));
    EXPECT_GT(fiscal.value(QStringLiteral("fiscalDocumentNumber")).toInt(), 0);
    EXPECT_EQ(fiscal.value(QStringLiteral("fnNumber")).toString().size(), 16);
    EXPECT_EQ(fiscal.value(QStringLiteral("registrationNumber")).toString().size(), 16);
    EXPECT_FALSE(fiscal.value(QStringLiteral("shiftNumber")).toString().isEmpty());
    const QString sign = fiscal.value(QStringLiteral("fiscalSign")).toString();
    EXPECT_GT(sign.toLongLong(), 1LL << 31) << "digits that do not fit into 32 bits come through";
    const QString dateTime = fiscal.value(QStringLiteral("dateTime")).toString();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d$"))
                    .match(dateTime)
                    .hasMatch())
        << dateTime.toStdString();
    EXPECT_EQ(line.value(QStringLiteral("qr")).toString(),
        QStringLiteral("t=%1&s=160.00&fn=%2&i=%3&fp=%4&n=1")
            .arg(dateTime.first(16).remove(u'-').remove(u':'),
                fiscal.value(QStringLiteral("fnNumber")).toString(),
                QString::number(fiscal.value(QStringLiteral("fiscalDocumentNumber")).toInt()), sign));
}

TEST_F(Sale, TakesEveryExample)
{
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral(EXAMPLES "/plain.json"),
        QStringLiteral(EXAMPLES "/agent.json"), QStringLiteral(EXAMPLES "/marked.json"),
        QStringLiteral(EXAMPLES "/mixed.json"), QStringLiteral(EXAMPLES "/batch.jsonl")});
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.lines().size(), 9);
    for (const QString& row : sold.columns({QStringLiteral("outcome")}))
        EXPECT_EQ(row, QStringLiteral("registered"));
}

TEST_F(Sale, TakesReceiptsFromStandardInput)
{
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("-")},
        receiptLine(QStringLiteral("stdin-1")) + receiptLine(QStringLiteral("stdin-2")));
    EXPECT_EQ(sold.exitCode, 0) << sold.err.toStdString();
    EXPECT_EQ(sold.columns({QStringLiteral("file"), QStringLiteral("line"), QStringLiteral("id")}),
        (QStringList{QStringLiteral("- 1 stdin-1"), QStringLiteral("- 2 stdin-2")}));
}

TEST_F(Sale, OfAnIdThatTheServiceKnowsBringsTheFirstResult)
{
    const QString file = shop.receipts({QStringLiteral("twice-1")});
    const Ran first = shop.frhost({QStringLiteral("sell"), file});
    const Ran second = shop.frhost({QStringLiteral("sell"), file});
    EXPECT_EQ(second.exitCode, 0) << second.err.toStdString();
    QJsonObject expected = first.lines().value(0);
    expected.insert(QStringLiteral("recovered"), true);
    EXPECT_EQ(second.lines(), QList<QJsonObject>{expected});
}

TEST_F(Sale, UnderAnIdOfAnotherReceiptIsRefused)
{
    EXPECT_EQ(shop.frhost({QStringLiteral("sell"), QStringLiteral("-")},
                      receiptLine(QStringLiteral("mixed-up-1"), 160))
                  .exitCode,
        0);
    const Ran other = shop.frhost(
        {QStringLiteral("sell"), QStringLiteral("-")}, receiptLine(QStringLiteral("mixed-up-1"), 160.01));
    EXPECT_EQ(other.exitCode, 3);
    EXPECT_EQ(other.columns(outcome), QStringList{QStringLiteral("mixed-up-1 refused")});
    EXPECT_EQ(other.lines().first().value(QStringLiteral("error")).toObject(),
        (QJsonObject{{QStringLiteral("code"), 33},
            {QStringLiteral("message"),
                QStringLiteral("The id already belongs to another receipt, registered with the total 160.00 "
                               "instead of 160.01")}}));
    EXPECT_THAT(other.err.toStdString(),
        HasSubstr("This sale is NOT registered. Give it an id of its own and run it again."));
}

TEST_F(Sale, GoesOnAfterAReceiptThatIsRefused)
{
    const QByteArray wrong =
        receiptLine(QStringLiteral("refused-2")).replace("\"sum\":160.00}]", "\"sum\":100.00}]");
    const QByteArray noBuyer = R"({"id":"refused-3","positions":[],"payments":[]})"
                               "\n";
    const QByteArray refund = R"({"id":"refused-4","documentType":1,"positions":[],"payments":[]})"
                              "\n";
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("-")},
        receiptLine(QStringLiteral("refused-1")) + wrong + noBuyer + refund +
            receiptLine(QStringLiteral("refused-5")));
    EXPECT_EQ(sold.exitCode, 3);
    EXPECT_EQ(sold.columns(outcome),
        (QStringList{QStringLiteral("refused-1 registered"), QStringLiteral("refused-2 refused"),
            QStringLiteral("refused-3 refused"), QStringLiteral("refused-4 refused"),
            QStringLiteral("refused-5 registered")}));
    QList<QJsonObject> errors;
    for (const QJsonObject& line : sold.lines().sliced(1, 3))
        errors << line.value(QStringLiteral("error")).toObject();
    EXPECT_EQ(errors[0], (QJsonObject{{QStringLiteral("code"), 32},
                             {QStringLiteral("type"), QStringLiteral("FrWorkWithServiceException")},
                             {QStringLiteral("message"), QStringLiteral("Некорректные данные в запросе")}}));
    EXPECT_EQ(errors[1], (QJsonObject{{QStringLiteral("type"), QStringLiteral("FrWorkWithServiceException")},
                             {QStringLiteral("message"),
                                 QStringLiteral("Требуется телефон или электронный адрес покупателя")}}));
    EXPECT_EQ(errors[2], (QJsonObject{{QStringLiteral("type"), QStringLiteral("FrCommandException")},
                             {QStringLiteral("message"), QStringLiteral("Тип чека не поддерживается ФР")}}));
}

TEST_F(Sale, WithAWrongReceiptAmongItsFilesSendsNothing)
{
    const Ran sold = shop.frhost({QStringLiteral("sell"), QStringLiteral("-")},
        receiptLine(QStringLiteral("nothing-1")) + "{\"id\":\"nothing-2\"}\n");
    EXPECT_EQ(sold.exitCode, 2);
    EXPECT_EQ(sold.out, QString());
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("-:2: Missing required property 'payments'."));
    EXPECT_THAT(sold.err.toStdString(), HasSubstr("Nothing was sent."));
    const Ran again =
        shop.frhost({QStringLiteral("sell"), QStringLiteral("-")}, receiptLine(QStringLiteral("nothing-1")));
    EXPECT_EQ(again.columns({QStringLiteral("outcome"), QStringLiteral("recovered")}),
        QStringList{QStringLiteral("registered -")});
}

TEST_F(Sale, CanBeSentFirstAndAskedAboutLater)
{
    const Ran sent =
        shop.frhost({QStringLiteral("send"), QStringLiteral("-")}, receiptLine(QStringLiteral("sent-1")));
    EXPECT_EQ(sent.exitCode, 0) << sent.err.toStdString();
    ASSERT_EQ(sent.lines().size(), 1);
    EXPECT_EQ(sent.lines().first().keys(), (QStringList{QStringLiteral("file"), QStringLiteral("id"),
                                               QStringLiteral("line"), QStringLiteral("uuid")}));
    const QString uuid = sent.lines().first().value(QStringLiteral("uuid")).toString();
    const QStringList status{QStringLiteral("status"), QStringLiteral("external_id")};
    Ran asked = shop.frhost({QStringLiteral("info"), uuid});
    while (asked.exitCode == 0 &&
           asked.columns({QStringLiteral("status")}) == QStringList{QStringLiteral("wait")})
        asked = shop.frhost({QStringLiteral("info"), uuid});
    EXPECT_EQ(asked.exitCode, 0) << asked.err.toStdString();
    EXPECT_EQ(asked.columns(status), QStringList{QStringLiteral("done sent-1")});
    const Ran again =
        shop.frhost({QStringLiteral("send"), QStringLiteral("-")}, receiptLine(QStringLiteral("sent-1")));
    EXPECT_EQ(again.columns({QStringLiteral("uuid"), QStringLiteral("recovered")}),
        QStringList{uuid + QStringLiteral(" true")});
}

TEST_F(Sale, UnknownToTheServiceCannotBeAskedAbout)
{
    const Ran asked = shop.frhost({QStringLiteral("info"), QStringLiteral("no-such-document")});
    EXPECT_EQ(asked.exitCode, 3);
    EXPECT_EQ(asked.lines()
                  .value(0)
                  .value(QStringLiteral("error"))
                  .toObject()
                  .value(QStringLiteral("code"))
                  .toInt(),
        30);
    EXPECT_THAT(asked.err.toStdString(), HasSubstr("Документ с указанным идентификатором не найден"));
    EXPECT_EQ(shop.frhost({QStringLiteral("info"), QStringLiteral("../../getToken")}).exitCode, 1);
}

TEST_F(Sale, NeedsTheRightPassword)
{
    shop.configure(QStringLiteral("password"), QStringLiteral("wrong-canary"));
    for (const QStringList& command :
        {QStringList{QStringLiteral("check")}, QStringList{QStringLiteral("sell"), QStringLiteral("-")}}) {
        const Ran refused = shop.frhost(command, receiptLine(QStringLiteral("password-1")));
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_EQ(refused.out, QString());
        EXPECT_THAT(refused.err.toStdString(), HasSubstr("Неверный логин или пароль"));
        EXPECT_THAT(refused.err.toStdString(), testing::Not(HasSubstr("canary")));
    }
}

TEST_F(Sale, CanBeCheckedBeforehand)
{
    const Ran checked = shop.frhost({QStringLiteral("check")});
    EXPECT_EQ(checked.exitCode, 0) << checked.err.toStdString();
    EXPECT_EQ(checked.columns({QStringLiteral("connected")}), QStringList{QStringLiteral("true")});
}

} // namespace
