#include "till/sale/salejournal.h"

#include "till/journal/journalerror.h"
#include "till/text.h"
#include "till/wire/observingtransport.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

QString place(const JournalRecord& record)
{
    return u"%1:%2"_s.arg(record.file, QString::number(record.line));
}

QString time(const JournalRecord& record)
{
    return record.sent.toString(u"dd.MM.yyyy hh:mm:ss"_s);
}

QString fateOf(ReceiptState state)
{
    switch (state) {
    case ReceiptState::Accepted:
        return Text::tr("the service has accepted it");
    case ReceiptState::Failed:
        return Text::tr("the service could not register it");
    case ReceiptState::Registered:
    case ReceiptState::Incomplete:
        return Text::tr("it is registered");
    case ReceiptState::Sent:
    case ReceiptState::Unknown:
    case ReceiptState::Refused:
        break;
    }
    return Text::tr("its outcome is unknown");
}

QString adviceAgainst(ReceiptState state)
{
    switch (state) {
    case ReceiptState::Failed:
        return Text::tr(
            "Nothing is registered under this id, and it is used up. Give the sale a new id and run "
            "it again.");
    case ReceiptState::Registered:
    case ReceiptState::Incomplete:
        return Text::tr(
            "This receipt was not sent. If it is another sale, give it an id of its own and run it "
            "again. If it is the same sale, it is registered already.");
    default:
        return Text::tr(
            "This receipt was not sent. If it is another sale, give it an id of its own and run it "
            "again. If it is the same sale, first run it exactly as it was sent, which shows what "
            "became of it.");
    }
}

ReceiptResult conflictWith(const JournalRecord& record, const ReceiptResult& unsent)
{
    ReceiptResult result;
    result.file = unsent.file;
    result.line = unsent.line;
    result.id = unsent.id;
    result.outcome = Outcome::Refused;
    result.verdict = SaleVerdict::Refused;
    result.next = NextStep::NewId;
    result.error = ErrorInfo{{}, std::nullopt,
        (record.state == ReceiptState::Sent
                ? Text::tr("Another receipt may have been sent under this id on %1 (%2): %3")
                : Text::tr("Another receipt was sent under this id on %1 (%2): %3"))
            .arg(time(record), place(record), fateOf(record.state))};
    result.advice = adviceAgainst(record.state);
    return result;
}

ReceiptResult incomplete(ReceiptResult result)
{
    const Conclusion conclusion = conclusionOf(SaleVerdict::Incomplete);
    result.verdict = SaleVerdict::Incomplete;
    result.outcome = conclusion.outcome;
    result.error = ErrorInfo{{}, std::nullopt, conclusion.message};
    result.advice = conclusion.advice;
    result.endsRun = conclusion.endsRun;
    result.next = nextStepOf(SaleVerdict::Incomplete, {});
    return result;
}

ReceiptResult contradicted(ReceiptResult result, const JournalRecord& earlier)
{
    result.next = result.verdict == SaleVerdict::AccountRefused ? NextStep::Account : NextStep::Rerun;
    result.verdict = SaleVerdict::Unknown;
    result.outcome = Outcome::Unknown;
    const QString text =
        earlier.state == ReceiptState::Sent
            ? Text::tr("This very receipt may have been sent before, on %1 (%2): %3. Do NOT give it a new id "
                       "because of this answer. Correct the cause and run the same file again.")
            : Text::tr("This very receipt was sent before, on %1 (%2): %3. Do NOT give it a new id because "
                       "of this answer. Correct the cause and run the same file again.");
    result.advice = text.arg(time(earlier), place(earlier), fateOf(earlier.state));
    result.endsRun = true;
    return result;
}

QString twinWarning(const QString& id, const JournalRecord& twin)
{
    const QString text =
        twin.state == ReceiptState::Sent
            ? Text::tr("%1 has the same content as %2, which may have been sent on %3 (%4) and is not proven "
                       "to be registered. If both are the same sale, it may be registered twice; running %2 "
                       "again shows its outcome.")
            : Text::tr("%1 has the same content as %2, sent on %3 (%4), which is not proven to be "
                       "registered. If both "
                       "are the same sale, it may be registered twice; running %2 again shows its outcome.");
    return text.arg(id, twin.id, time(twin), place(twin));
}

std::optional<JournalEvidence> evidenceIn(const ReceiptResult& result)
{
    if (!result.fiscal)
        return std::nullopt;
    return JournalEvidence{result.fiscal->fnNumber, result.fiscal->fiscalDocumentNumber,
        result.fiscal->fiscalSign, result.fiscal->total};
}

} // namespace

SaleJournal::SaleJournal(Journal* usedJournal, ObservingTransport& usedTransport, Warn warning)
    : journal(usedJournal)
    , transport(usedTransport)
    , warn(std::move(warning))
{
    if (journal)
        transport.setGate([this](const QUrl& url, const QByteArray& body) { admit(url, body); });
}

SaleJournal::~SaleJournal()
{
    transport.setGate({});
}

void SaleJournal::begin(const QueuedReceipt& queued)
{
    file = queued.file;
    line = queued.line;
    claim.reset();
    failure = nullptr;
}

// A driver may do anything with an exception, so it is remembered here too; and a receipt that was kept back
// once stays so.
void SaleJournal::admit(const QUrl& url, const QByteArray& body)
{
    check();
    try {
        if (!claim)
            claim = journal->claim(readComposed(url, body), file, line);
    } catch (const JournalError&) {
        failure = std::current_exception();
        throw;
    }
    if (claim->conflict)
        throw Error(Problem::Receipt, Text::tr("the id is in use"));
    // Of a receipt that is attempted again, once is enough.
    if (claim->twin && warnedOf != claim->receipt.id)
        warn(twinWarning(claim->receipt.id, *claim->twin));
    if (claim->twin)
        warnedOf = claim->receipt.id;
    claim->twin.reset();
}

bool SaleJournal::knows(const QUrl& url, const QByteArray& body)
{
    if (!journal)
        return false;
    try {
        const ComposedReceipt receipt = readComposed(url, body);
        const auto record = journal->find(receipt.fiscalRegister, receipt.id);
        return record && record->state != ReceiptState::Refused;
    } catch (const JournalError&) {
        failure = std::current_exception();
        throw;
    }
}

std::optional<JournalRecord> SaleJournal::earlier() const
{
    return claim ? claim->earlier : std::nullopt;
}

ReceiptResult SaleJournal::concluded(ReceiptResult result)
{
    check();
    if (!claim)
        return result;
    if (claim->conflict)
        return conflictWith(*claim->conflict, result);
    const bool isSameDocument =
        claim->earlier && (claim->earlier->uuid.isEmpty() || claim->earlier->uuid == result.uuid);
    if (result.recovered && isSameDocument)
        result.compared = Comparison::Content;
    try {
        record(result);
    } catch (const JournalError&) {
        failure = std::current_exception();
    }
    return claim->earlier ? weighed(std::move(result), *claim->earlier) : result;
}

void SaleJournal::check() const
{
    if (failure)
        std::rethrow_exception(failure);
}

// A refusal now says nothing of what an earlier attempt with the same content has reached, and the id cannot
// belong to another receipt.
ReceiptResult SaleJournal::weighed(ReceiptResult result, const JournalRecord& earlier) const
{
    const bool isRegistered =
        earlier.state == ReceiptState::Registered || earlier.state == ReceiptState::Incomplete;
    const bool isRefused =
        result.verdict == SaleVerdict::Refused || result.verdict == SaleVerdict::AccountRefused;
    if (result.verdict == SaleVerdict::ForeignId)
        return incomplete(std::move(result));
    if ((isRefused && (isProven(earlier.state) || !stateOf(result))) ||
        (result.verdict == SaleVerdict::Failed && isRegistered))
        return contradicted(std::move(result), earlier);
    return result;
}

void SaleJournal::record(const ReceiptResult& result)
{
    // Equal totals do not make it the receipt that the service has.
    const bool isUnproven = result.recovered && !claim->earlier;
    if (!transport.seen().receiptSent || isUnproven)
        journal->withdraw(*claim);
    else if (const auto state = stateOf(result))
        journal->conclude(*claim, *state, result.uuid, evidenceIn(result));
}

// None where the result says nothing about an earlier attempt under the same id.
std::optional<ReceiptState> SaleJournal::stateOf(const ReceiptResult& result) const
{
    switch (result.verdict) {
    case SaleVerdict::Registered:
        return ReceiptState::Registered;
    case SaleVerdict::Incomplete:
        return ReceiptState::Incomplete;
    case SaleVerdict::Accepted:
        return ReceiptState::Accepted;
    case SaleVerdict::Failed:
        return ReceiptState::Failed;
    case SaleVerdict::Refused:
    case SaleVerdict::AccountRefused:
    case SaleVerdict::ForeignId:
        break;
    default:
        return ReceiptState::Unknown;
    }
    const auto code = transport.seen().registration.errorCode;
    const bool isAboutContent = code && !meaningOf(*code).concernsRequest;
    return !claim->earlier || isAboutContent ? std::optional(ReceiptState::Refused) : std::nullopt;
}

} // namespace till
