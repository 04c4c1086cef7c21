#include "till/sale/verdict.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

bool isWaiting(const ServiceAnswer& answer)
{
    return answer.status == "wait"_L1;
}

bool isOfAnotherDocument(const ServiceAnswer& answer, const QString& id, const QString& uuid)
{
    return (!answer.externalId.isEmpty() && answer.externalId != id) ||
           (!answer.uuid.isEmpty() && answer.uuid != uuid);
}

SaleVerdict judgeErrorCode(ServiceCode code, const QString& uuid)
{
    if (code == ServiceCode::DocumentExists)
        return uuid.isEmpty() ? SaleVerdict::Existing : SaleVerdict::Unfinished;
    if (code == ServiceCode::DocumentInProgress && !uuid.isEmpty())
        return SaleVerdict::Unfinished;
    return meaningOf(code).refusesReceipt ? SaleVerdict::RefusedOnce : SaleVerdict::Unknown;
}

SaleVerdict verdictOfUnsent(const WireRecord& seen, bool driverFailed)
{
    if (seen.lastAnswered)
        return SaleVerdict::NotSent;
    return driverFailed ? SaleVerdict::Refused : SaleVerdict::Unknown;
}

// What the answer to the receipt says, before any question about its document.
SaleVerdict judgeRegistration(const WireRecord& seen, bool driverFailed)
{
    if (!seen.receiptSent)
        return verdictOfUnsent(seen, driverFailed);
    const ServiceAnswer& answer = seen.registration;
    if (!answer.arrived)
        return SaleVerdict::Unknown;
    if (answer.errorCode)
        return judgeErrorCode(*answer.errorCode, answer.uuid);
    return answer.uuid.isEmpty() ? SaleVerdict::Unknown : SaleVerdict::Unfinished;
}

SaleVerdict judgeEvidence(const WireRecord& seen, const ReceiptFacts& receipt)
{
    const Evidence evidence = evidenceIn(seen.status, receipt);
    if (evidence.isWhole())
        return SaleVerdict::Registered;
    const bool isForeign = existedBefore(seen) && evidence.otherTotal && evidence.namesTheDocument();
    return isForeign ? SaleVerdict::ForeignId : SaleVerdict::Incomplete;
}

} // namespace

DocumentState judgeStatus(const WireRecord& seen, const QString& id)
{
    const ServiceAnswer& answer = seen.status;
    if (!answer.arrived)
        return DocumentState::NoNews;
    if (isOfAnotherDocument(answer, id, seen.registration.uuid))
        return DocumentState::Doubtful;
    // A failure that names no document may be about anything.
    if (answer.saysFailed())
        return answer.uuid.isEmpty() && answer.externalId.isEmpty() ? DocumentState::NoNews
                                                                    : DocumentState::Failed;
    if (answer.errorCode == ServiceCode::DocumentInProgress || (!answer.errorCode && isWaiting(answer)))
        return DocumentState::Waiting;
    if (answer.hasError)
        return DocumentState::NoNews;
    return answer.status == "done"_L1 ? DocumentState::Registered : DocumentState::Doubtful;
}

SaleVerdict verdictOf(DocumentState state, const WireRecord& seen, const ReceiptFacts& receipt)
{
    switch (state) {
    case DocumentState::Registered:
        return judgeEvidence(seen, receipt);
    case DocumentState::Failed:
        return SaleVerdict::Failed;
    case DocumentState::Waiting:
    case DocumentState::NoNews:
        return SaleVerdict::Unfinished;
    case DocumentState::Doubtful:
        break;
    }
    return SaleVerdict::Unknown;
}

SaleVerdict judgeSale(const WireRecord& seen, const ReceiptFacts& receipt, bool driverFailed)
{
    SaleVerdict verdict = judgeRegistration(seen, driverFailed);
    if (verdict == SaleVerdict::Unfinished)
        verdict = verdictOf(judgeStatus(seen, receipt.id), seen, receipt);
    return verdict == SaleVerdict::Failed ? SaleVerdict::FailedOnce : verdict;
}

SaleVerdict judgeSending(const WireRecord& seen, const QString& id, bool driverFailed)
{
    const SaleVerdict verdict = judgeRegistration(seen, driverFailed);
    if (verdict == SaleVerdict::Unfinished) {
        const ServiceAnswer& answer = seen.registration;
        if (isOfAnotherDocument(answer, id, answer.uuid))
            return SaleVerdict::Unknown;
        const bool isAccepted = !answer.hasError && isWaiting(answer);
        return isAccepted || existedBefore(seen) ? SaleVerdict::Accepted : SaleVerdict::Unknown;
    }
    return verdict == SaleVerdict::Existing ? SaleVerdict::Unknown : verdict;
}

SaleVerdict confirmed(ServiceCode refusal)
{
    return meaningOf(refusal).concernsAccount ? SaleVerdict::AccountRefused : SaleVerdict::Refused;
}

bool existedBefore(const WireRecord& seen)
{
    return seen.registration.errorCode == ServiceCode::DocumentExists ||
           seen.registration.errorCode == ServiceCode::DocumentInProgress;
}

std::optional<std::chrono::milliseconds> DocumentWait::after(DocumentState state, const Patience& patience)
{
    failed = state == DocumentState::Failed ? failed + 1 : 0;
    if (state == DocumentState::Waiting)
        silent = 0;
    else if (state == DocumentState::NoNews)
        ++silent;
    const bool goesOn = state == DocumentState::Waiting ||
                        (state == DocumentState::NoNews && silent < patience.questionsWithoutNews) ||
                        (state == DocumentState::Failed && failed <= patience.repeatedFailures);
    if (!goesOn)
        return std::nullopt;
    return failed > 0 ? patience.beforeRepetition : patience.beforeQuestion;
}

DocumentState awaitDocument(const std::function<DocumentState()>& ask,
    const std::function<void(std::chrono::milliseconds time)>& pause, const Patience& patience)
{
    DocumentWait wait;
    for (;;) {
        const DocumentState state = ask();
        const auto time = wait.after(state, patience);
        if (!time)
            return state;
        pause(*time);
    }
}

} // namespace till
