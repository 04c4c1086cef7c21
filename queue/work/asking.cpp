#include "queue/work/asking.h"

#include "host/vposfrdriver.h"
#include "till/sale/attempt.h"
#include "till/sale/verdict.h"

#include <tuple>
#include <vector>

namespace queue {

namespace {

Word wordFor(till::DocumentState state)
{
    switch (state) {
    case till::DocumentState::Registered:
        return Word::Registered;
    case till::DocumentState::Failed:
        return Word::Failed;
    case till::DocumentState::Waiting:
        return Word::Waiting;
    case till::DocumentState::NoNews:
    case till::DocumentState::Doubtful:
        break;
    }
    return Word::Unclear;
}

Word wordOn(const Entry& entry, till::Session& session)
{
    if (entry.uuid.isEmpty())
        return Word::Unasked;
    session.transport().startReceipt();
    std::ignore =
        till::attempt([&] { std::ignore = session.fiscalRegister().service().getDocumentInfo(entry.uuid); });
    till::WireRecord seen = session.transport().seen();
    seen.registration.uuid = entry.uuid;
    return wordFor(till::judgeStatus(seen, entry.id));
}

} // namespace

void askAboutDoubtful(
    Store& store, till::Session& session, const std::function<void(const Entry& entry, Word word)>& handle)
{
    // Read first: workers go on writing while the service is asked.
    std::vector<Entry> doubtful;
    store.forEach("register = ? AND maybeSent = 1 AND state IN ('queued', 'sent', 'unknown', 'incomplete')"
                  " ORDER BY number",
        {store.registerNumber()}, [&](const Entry& entry) { doubtful.push_back(entry); });
    for (const Entry& entry : doubtful)
        handle(entry, wordOn(entry, session));
}

} // namespace queue
