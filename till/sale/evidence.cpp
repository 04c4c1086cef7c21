#include "till/sale/evidence.h"

#include "till/text.h"
#include "till/wire/fiscalpayload.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

bool Evidence::namesTheDocument() const
{
    return !missing.contains(u"external_id"_s) && !missing.contains(u"uuid"_s);
}

Evidence evidenceIn(const ServiceAnswer& done, const ReceiptFacts& receipt)
{
    Evidence evidence;
    if (done.externalId.isEmpty())
        evidence.missing << u"external_id"_s;
    if (done.uuid.isEmpty())
        evidence.missing << u"uuid"_s;
    for (const QString& key : missingProof(done.payload))
        evidence.missing << u"payload."_s + key;
    const std::optional<double> total = totalIn(done.payload);
    if (total && !isTheSameSum(*total, receipt.total))
        evidence.otherTotal = total;
    return evidence;
}

QString describe(const Evidence& evidence, const ReceiptFacts& receipt)
{
    const QString missing = evidence.missing.join(u", "_s);
    if (!evidence.otherTotal)
        return Text::tr("The service says that the receipt is registered, but its answer has no valid %1")
            .arg(missing);
    const QString total = roubles(*evidence.otherTotal);
    if (missing.isEmpty())
        return Text::tr(
            "The service says that the receipt is registered, but with the total %1 instead of %2")
            .arg(total, roubles(receipt.total));
    return Text::tr("The service says that the receipt is registered, but with the total %1 instead of %2, "
                    "and its answer has no valid %3")
        .arg(total, roubles(receipt.total), missing);
}

} // namespace till
