#include "till/sale/verdict.h"

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

constexpr int documentExists = 33;
constexpr int documentInProgress = 34;
constexpr int maxSilentQuestions = 3;

// Codes with which the service answers a receipt that it has not registered and will not. Code 0 (unknown
// error), 50 (server error) and whatever is not listed leave that open.
constexpr std::array refusals{1, 2, 10, 11, 12, 13, 14, 20, 21, 30, 31, 32, 40, 41};

bool isRefusal(int code)
{
    return std::find(refusals.begin(), refusals.end(), code) != refusals.end();
}

SaleVerdict judgeErrorCode(int code, const QString& uuid)
{
    if (code == documentExists)
        return SaleVerdict::TakeExisting;
    if (code == documentInProgress && !uuid.isEmpty())
        return SaleVerdict::AskAgain;
    return isRefusal(code) ? SaleVerdict::Refused : SaleVerdict::Unknown;
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
        return SaleVerdict::AskAgain;
    case DocumentState::Doubtful:
        break;
    }
    return SaleVerdict::Unknown;
}

SaleVerdict verdictOfUnsent(const Exchange& seen, bool driverFailed)
{
    if (seen.lastAnswered == false)
        return SaleVerdict::NotSent;
    return driverFailed ? SaleVerdict::Refused : SaleVerdict::Unknown;
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
    if (answer.errorCode == documentInProgress)
        return DocumentState::Waiting;
    if (answer.errorCode)
        return DocumentState::NoNews;
    if (answer.status == u"done"_s)
        return DocumentState::Registered;
    return answer.status == u"wait"_s ? DocumentState::Waiting : DocumentState::Doubtful;
}

SaleVerdict judgeSale(const Exchange& seen, const QString& id, bool driverFailed)
{
    if (!seen.receiptSent)
        return verdictOfUnsent(seen, driverFailed);
    if (!seen.registration.arrived)
        return SaleVerdict::Unknown;
    if (seen.registration.errorCode)
        return judgeErrorCode(*seen.registration.errorCode, seen.registration.uuid);
    if (seen.registration.uuid.isEmpty())
        return SaleVerdict::Unknown;
    return verdictOf(judgeStatus(seen.status, id));
}

SaleVerdict judgeSending(const Exchange& seen, bool driverFailed)
{
    if (!seen.receiptSent)
        return verdictOfUnsent(seen, driverFailed);
    if (!seen.registration.arrived)
        return SaleVerdict::Unknown;
    const bool hasUuid = !seen.registration.uuid.isEmpty();
    if (!seen.registration.errorCode)
        return hasUuid ? SaleVerdict::Registered : SaleVerdict::Unknown;
    const SaleVerdict verdict = judgeErrorCode(*seen.registration.errorCode, seen.registration.uuid);
    if (verdict == SaleVerdict::TakeExisting || verdict == SaleVerdict::AskAgain)
        return hasUuid ? SaleVerdict::Registered : SaleVerdict::Unknown;
    return verdict;
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

} // namespace frhost
