#include "queue/work/ending.h"

#include "till/text.h"

#include <algorithm>

using till::Outcome;
using till::ReceiptResult;
using till::SaleVerdict;
using till::ServiceCode;
using till::Text;
using till::WireRecord;

namespace queue {

namespace {

using namespace std::chrono_literals;

// After so many attempts that each of them ended without the evidence, a person has to look.
constexpr int longestRow = 3;
constexpr std::chrono::milliseconds longestDelay = 60s;

std::chrono::milliseconds delayAfter(int fruitless)
{
    return std::min<std::chrono::milliseconds>(longestDelay, 1s * (1 << std::min(fruitless, 6)));
}

// The register pauses after a silence, and then the receipt is the first to go. Where the service falls
// silent at it again, others go before it: longer than the pause, after which it would be the first again.
std::chrono::milliseconds delayAfterSilence(int fruitless)
{
    if (fruitless == 0)
        return 0s;
    return std::min<std::chrono::milliseconds>(longestDelay, 4s * (1 << std::min(fruitless - 1, 4)));
}

// As it was before: nothing of this attempt counts.
Ending untouched(const Entry& entry)
{
    Ending ending;
    ending.state = entry.state == State::Sent ? State::Unknown : entry.state;
    ending.maybeSent = entry.maybeSent;
    ending.fruitless = entry.fruitless;
    return ending;
}

Ending fruitless(const Entry& entry, State state)
{
    Ending ending;
    ending.state = state;
    ending.fruitless = entry.fruitless + 1;
    ending.delay = delayAfter(entry.fruitless);
    return ending;
}

Ending incomplete(Entry entry)
{
    // Only answers without evidence count.
    if (entry.state != State::Incomplete)
        entry.fruitless = 0;
    Ending ending = fruitless(entry, State::Incomplete);
    ending.isHeld = ending.fruitless >= longestRow;
    return ending;
}

Ending refused(const Entry& entry, const WireRecord& seen, bool hasSameContent)
{
    // It may be processed another time.
    const auto code = seen.registration.errorCode;
    if (code == ServiceCode::NotProcessed)
        return fruitless(entry, State::Unknown);
    Ending ending = untouched(entry);
    const bool isAboutContent = code && !till::meaningOf(*code).concernsRequest;
    // A refusal of the request, or of another content, says nothing of an earlier attempt, and one by the
    // driver nothing of the service.
    if (seen.receiptSent && (!entry.maybeSent || (isAboutContent && hasSameContent)))
        ending.state = State::Refused;
    else
        ending.isHeld = true;
    return ending;
}

Ending registered(const ReceiptResult& result)
{
    Ending ending;
    ending.state = State::Registered;
    ending.evidence = till::JournalEvidence{result.fiscal->fnNumber, result.fiscal->fiscalDocumentNumber,
        result.fiscal->fiscalSign, result.fiscal->total};
    return ending;
}

Ending failed()
{
    Ending ending;
    ending.state = State::Failed;
    return ending;
}

// The service refuses the receipt for what a person has to put right for all of them.
bool isOfTheAccount(const ReceiptResult& result)
{
    return result.verdict == SaleVerdict::AccountRefused ||
           (result.verdict == SaleVerdict::Refused && result.next == till::NextStep::Account);
}

// What the service said before, it cannot take back by a refusal.
Ending endingOf(const Entry& entry, const ReceiptResult& result, const WireRecord& seen, bool hasSameContent)
{
    if (isOfTheAccount(result))
        return untouched(entry);
    switch (result.verdict) {
    case SaleVerdict::Registered:
        return result.fiscal && !result.uuid.isEmpty() ? registered(result) : incomplete(entry);
    case SaleVerdict::Incomplete:
        return incomplete(entry);
    case SaleVerdict::Failed:
        return entry.state == State::Incomplete ? incomplete(entry) : failed();
    case SaleVerdict::Refused:
        return entry.state == State::Incomplete ? incomplete(entry) : refused(entry, seen, hasSameContent);
    case SaleVerdict::ForeignId:
        return entry.maybeSent ? incomplete(entry) : refused(entry, seen, hasSameContent);
    case SaleVerdict::NotSent:
        return untouched(entry);
    default:
        return fruitless(entry, entry.state == State::Incomplete ? State::Incomplete : State::Unknown);
    }
}

bool isOfTheRegister(const ReceiptResult& result, const WireRecord& seen)
{
    switch (result.verdict) {
    case SaleVerdict::NotSent:
        return true;
    case SaleVerdict::AccountRefused:
    case SaleVerdict::Refused:
        return isOfTheAccount(result);
    case SaleVerdict::Registered:
    case SaleVerdict::Incomplete:
    case SaleVerdict::Failed:
    case SaleVerdict::ForeignId:
        return false;
    default:
        return seen.lastAnswered == false || seen.tokensRejected;
    }
}

} // namespace

Judgement judge(const Entry& entry, const ReceiptResult& result, const WireRecord& seen, bool hasSameContent)
{
    Judgement judgement{endingOf(entry, result, seen, hasSameContent), {}};
    judgement.ending.uuid = result.uuid;
    if (!isOfTheRegister(result, seen))
        return judgement;
    if (result.error)
        judgement.trouble = result.error->message;
    if (judgement.trouble.isEmpty())
        judgement.trouble = Text::tr("The service did not answer");
    // The register's trouble is not the receipt's.
    const bool isSilence = judgement.ending.fruitless > entry.fruitless;
    if (entry.state == State::Incomplete)
        judgement.ending.fruitless = entry.fruitless;
    judgement.ending.delay = isSilence ? delayAfterSilence(entry.fruitless) : 0ms;
    return judgement;
}

} // namespace queue
