#include "till/sale/evidence.h"

#include "tests/support/qtprinters.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

const ReceiptFacts receipt{u"r1"_s, 160};

// What is wrong with the answer "done" whose other members are these.
QString flaws(const QByteArray& members)
{
    const QByteArray json = R"({"status":"done",)" + members + "}";
    const Evidence evidence = evidenceIn(readAnswer(QJsonDocument::fromJson(json).toVariant()), receipt);
    QStringList all = evidence.missing;
    if (evidence.otherTotal)
        all << QString::number(*evidence.otherTotal);
    EXPECT_EQ(evidence.isWhole(), all.isEmpty());
    return all.join(u' ');
}

TEST(Evidence, NeedsIdentityAndFiscalDataOfTheReceipt)
{
    const QByteArray own = R"("uuid":"u","external_id":"r1",)";
    const QByteArray fiscal = R"("fn_number":"0251440300046840","fiscal_document_number":29414,)"
                              R"("fiscal_document_attribute":3449555941)";
    const QByteArray whole = R"("payload":{"total":160,)" + fiscal + "}";
    struct Row
    {
        QByteArray members;
        QString flaws;
    };
    const Row rows[] = {
        {own + whole, u""_s},
        {own + R"("payload":{"total":160.004,)" + fiscal + "}", u""_s},
        {own + R"("payload":{"total":159.996,)" + fiscal + "}", u""_s},
        {own + R"("payload":{"total":160.01,)" + fiscal + "}", u"160.01"_s},
        {own + R"("payload":{"total":5,)" + fiscal + "}", u"5"_s},
        {own + R"("payload":{"total":0,)" + fiscal + "}", u"0"_s},
        {own + R"("payload":{"total":-160,)" + fiscal + "}", u"-160"_s},
        {own + R"("payload":{"total":"160",)" + fiscal + "}", u"payload.total"_s},
        {own + R"("payload":{)" + fiscal + "}", u"payload.total"_s},
        {own + R"("payload":{"total":160})",
            u"payload.fiscal_document_number payload.fn_number payload.fiscal_document_attribute"_s},
        {own + R"("payload":{"total":5})",
            u"payload.fiscal_document_number payload.fn_number payload.fiscal_document_attribute 5"_s},
        {R"("uuid":"u",)" + whole, u"external_id"_s},
        {R"("uuid":"u","external_id":1,)" + whole, u"external_id"_s},
        {R"("external_id":"r1",)" + whole, u"uuid"_s},
        {R"("uuid":null,"external_id":"r1",)" + whole, u"uuid"_s},
        {whole, u"external_id uuid"_s},
    };
    for (const Row& row : rows)
        EXPECT_EQ(flaws(row.members), row.flaws) << row.members.toStdString();
    for (const char* payload : {"null", "[]", "[160]", "{}", "160", "\"done\"", "true"})
        EXPECT_EQ(flaws(own + R"("payload":)" + payload),
            u"payload.total payload.fiscal_document_number payload.fn_number "
            u"payload.fiscal_document_attribute"_s)
            << payload;
}

TEST(Evidence, IsDescribedByWhatIsWrongWithIt)
{
    struct Row
    {
        Evidence evidence;
        QString text;
    };
    const Row rows[] = {
        {{{u"uuid"_s, u"payload.total"_s}, {}},
            u"The service says that the receipt is registered, but its answer has no valid uuid, "
            u"payload.total"_s},
        {{{}, 5.0},
            u"The service says that the receipt is registered, but with the total 5.00 instead of 160.00"_s},
        {{{u"uuid"_s}, 5.0},
            u"The service says that the receipt is registered, but with the total 5.00 instead of 160.00, "
            u"and its answer has no valid uuid"_s},
    };
    for (const Row& row : rows)
        EXPECT_EQ(describe(row.evidence, receipt), row.text);
}

} // namespace
