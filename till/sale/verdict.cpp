#include "till/sale/verdict.h"

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr int maxSilentQuestions = 3;
constexpr double halfKopeck = 0.005;

SaleVerdict judgeErrorCode(ServiceCode code, const QString& uuid)
{
    if (code == ServiceCode::DocumentExists)
        return SaleVerdict::Existing;
    if (code == ServiceCode::DocumentInProgress && !uuid.isEmpty())
        return SaleVerdict::Unfinished;
    return meaningOf(code).refusesReceipt ? SaleVerdict::Refused : SaleVerdict::Unknown;
}

SaleVerdict verdictOfUnsent(const WireRecord& seen, bool driverFailed)
{
    if (seen.lastAnswered == false)
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
    return answer.uuid.isEmpty() ? SaleVerdict::Unknown : SaleVerdict::Accepted;
}

} // namespace

DocumentState judgeStatus(const ServiceAnswer& answer, const QString& id)
{
    if (!answer.arrived)
        return DocumentState::NoNews;
    if (!answer.externalId.isEmpty() && answer.externalId != id)
        return DocumentState::Doubtful;
    if (answer.saysFailed())
        return DocumentState::Failed;
    if (answer.errorCode == ServiceCode::DocumentInProgress)
        return DocumentState::Waiting;
    if (answer.errorCode)
        return DocumentState::NoNews;
    if (answer.status == "done"_L1)
        return DocumentState::Registered;
    return answer.status == "wait"_L1 ? DocumentState::Waiting : DocumentState::Doubtful;
}

SaleVerdict verdictOf(DocumentState state)
{
    switch (state) {
    case DocumentState::Registered:
        return SaleVerdict::Registered;
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

SaleVerdict judgeSale(const WireRecord& seen, const QString& id, bool driverFailed)
{
    const SaleVerdict verdict = judgeRegistration(seen, driverFailed);
    return verdict == SaleVerdict::Accepted ? verdictOf(judgeStatus(seen.status, id)) : verdict;
}

SaleVerdict judgeSending(const WireRecord& seen, bool driverFailed)
{
    const SaleVerdict verdict = judgeRegistration(seen, driverFailed);
    if (verdict != SaleVerdict::Existing && verdict != SaleVerdict::Unfinished)
        return verdict;
    return seen.registration.uuid.isEmpty() ? SaleVerdict::Unknown : SaleVerdict::Accepted;
}

DocumentState awaitDocument(const std::function<DocumentState()>& ask, const std::function<void()>& pause)
{
    for (int silent = 0;;) {
        const DocumentState state = ask();
        if (state == DocumentState::Waiting)
            silent = 0;
        else if (state != DocumentState::NoNews || ++silent == maxSilentQuestions)
            return state;
        pause();
    }
}

SaleVerdict compareTotals(SaleVerdict verdict, std::optional<double> registered, double expected)
{
    const bool differs = registered && !(std::abs(*registered - expected) < halfKopeck);
    return verdict == SaleVerdict::Registered && differs ? SaleVerdict::ForeignId : verdict;
}

} // namespace till
