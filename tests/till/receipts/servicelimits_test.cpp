#include "tests/support/qtprinters.h"
#include "till/receipts/servicelimits.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

const QByteArray good =
    R"({"id":"a","requisites":[{"tag":1008,"value":"b@c"}],)"
    R"("positions":[{"name":"n","price":80.5,"quantity":2.5,"sum":202.5,"discount":1.25}],)"
    R"("payments":[{"type":1,"sum":201.25}]})";

// "pointer: rule" of each, one per line.
QString problems(const QByteArray& receipt)
{
    const QJsonDocument document = QJsonDocument::fromJson(receipt);
    EXPECT_TRUE(document.isObject()) << receipt.constData();
    QStringList all;
    for (const ReceiptProblem& problem : beyondServiceLimits(document.object()))
        all << problem.pointer + u": "_s + problem.rule;
    return all.join(u'\n');
}

QByteArray with(const char* part, const QByteArray& instead)
{
    EXPECT_TRUE(good.contains(part)) << part;
    return QByteArray(good).replace(part, instead);
}

TEST(ServiceLimits, HoldForTheExamples)
{
    EXPECT_EQ(problems(good), QString());
    for (const char* name : {"plain", "agent", "marked", "mixed"}) {
        QFile file(QStringLiteral(EXAMPLES "/%1.json").arg(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(problems(file.readAll()), QString()) << name;
    }
}

TEST(ServiceLimits, AreNamedOneByOne)
{
    const QByteArray long129 = '"' + QByteArray(129, 'x') + '"';
    struct Row
    {
        QByteArray receipt;
        const char* problem;
    };
    const Row rows[] = {
        {with("\"a\"", long129), "/id: the service accepts at most 128 characters"},
        {with("\"n\"", long129), "/positions/0/name: the service accepts at most 128 characters"},
        {with("\"n\"", "\"\""), "/positions/0/name: the service does not accept an empty text"},
        {with("b@c", QByteArray(65, 'x')), "/requisites/0/value: the service accepts at most 64 characters"},
        {with("\"type\":1", "\"type\":10"), "/payments/0/type: the service accepts 0 to 9"},
        {with("\"sum\":202.5", "\"sum\":203.5"),
            "/positions/0/sum: less the discount it is 202.25, but price times quantity is 201.25\n"
            "/payments: the payments are 201.25 and the lines 202.25; the service accepts a difference of at "
            "most "
            "0.99"},
        {with("\"sum\":201.25", "\"sum\":202.25"), "/payments: the payments are 202.25 and the lines 201.25; "
                                                   "the service accepts a difference of at most "
                                                   "0.99"},
        {with("\"sum\":201.25", "\"sum\":202.24"), ""},
        {with("\"sum\":201.25", "\"sum\":201.255"), "/payments/0/sum: the service accepts two decimals"},
        {with("\"sum\":201.25", "\"sum\":-1"), "/payments/0/sum: the service accepts 0 to 42949672.95\n"
                                               "/payments: the payments are -1.00 and the lines 201.25; the "
                                               "service accepts a difference of at most 0.99"},
        {with("\"price\":80.5,\"quantity\":2.5", "\"price\":0.002,\"quantity\":100625"),
            "/positions/0/price: the service accepts two decimals\n"
            "/positions/0/quantity: the service accepts more than 0 and at most 99999.999"},
        {with("\"quantity\":2.5", "\"quantity\":2.5001"),
            "/positions/0/quantity: the service accepts three decimals"},
        {R"({"id":"a","positions":[],"payments":[]})",
            "/positions: the service accepts 1 to 100\n/payments: the service accepts 1 to 10"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(problems(row.receipt), QString::fromLatin1(row.problem)) << row.receipt.constData();
}

} // namespace
