#include "queue/work/lane.h"

#include "till/error.h"
#include "till/receipts/receipt.h"
#include "till/sale/registrar.h"
#include "till/text.h"
#include "till/wire/servicecodes.h"

#include <QJsonDocument>

#include <algorithm>
#include <thread>
#include <tuple>
#include <utility>

using till::ReceiptResult;
using till::Text;

namespace queue {

namespace {

// More would be out of the reach of a person's decisions, and wait in the service instead of here.
constexpr std::size_t mostUnderWay = 4;

std::unique_ptr<till::Session> createdAlone(const Surroundings& surroundings, std::mutex& creation)
{
    const std::scoped_lock lock(creation);
    auto session = std::make_unique<till::Session>(surroundings.config, surroundings.plugin);
    // Throws where a receipt that is sent again might be registered again.
    std::ignore = session->fiscalRegister().service();
    return session;
}

} // namespace

Lane::Lane(const Surroundings& usedSurroundings, const WorkerLocks& locks, qint64 worker, Pause& usedPause,
    Pace& pace, std::mutex& usedCreation)
    : surroundings(usedSurroundings)
    , pause(usedPause)
    , creation(usedCreation)
    , store(surroundings.store, surroundings.address, surroundings.patience)
    , claims(store, locks, worker, surroundings.lease)
    , session(createdAlone(surroundings, creation))
{
    // Questions that come too often are answered as bad requests.
    session->transport().setQuestions({[&pace] { pace.wait(); },
        [&pace](const till::ServiceAnswer& answer) {
            pace.note(answer.errorCode == till::ServiceCode::BadRequest);
        }});
}

// Other lanes may be creating their devices.
Lane::~Lane()
{
    const std::scoped_lock lock(creation);
    session.reset();
}

bool Lane::run()
{
    while (mayGoOn()) {
        // Before the first receipt the account is asked, too. Meanwhile others may have begun a pause.
        if (!isConnected) {
            if (!isOver())
                pause.begin();
            continue;
        }
        const bool hasSent = sendNext();
        if (askNext() || hasSent)
            continue;
        if (surroundings.untilEmpty && underWay.empty() && claims.isDone())
            return true;
        if (!pause.rest(untilNext()))
            break;
    }
    while (!underWay.empty()) {
        if (!askNext())
            std::this_thread::sleep_for(untilNext());
    }
    return !(surroundings.untilEmpty && pause.isLongest());
}

// What the service works on is asked about during a pause, too.
bool Lane::mayGoOn()
{
    const auto isOverNow = [this] { return isOver(); };
    if (underWay.empty())
        return pause.wait(isOverNow);
    pause.tryNow(isOverNow);
    return !pause.isStopped();
}

bool Lane::sendNext()
{
    if (underWay.size() >= mostUnderWay || pause.isBegun())
        return false;
    const auto claim = claims.next();
    if (claim)
        send(*claim);
    return claim.has_value();
}

bool Lane::askNext()
{
    const auto next = std::ranges::min_element(underWay, {}, &UnderWay::due);
    if (next == underWay.end() || next->due > std::chrono::steady_clock::now())
        return false;
    till::Registrar registrar(session->fiscalRegister(), session->transport());
    auto result = registrar.ask(next->awaited);
    next->due = std::chrono::steady_clock::now() + next->awaited.pause;
    if (result) {
        const UnderWay done = std::move(*next);
        underWay.erase(next);
        conclude(done.claim, std::move(*result), done.hasSameContent);
    }
    return true;
}

std::chrono::milliseconds Lane::untilNext() const
{
    const auto next = std::ranges::min_element(underWay, {}, &UnderWay::due);
    if (next == underWay.end())
        return surroundings.idle;
    const auto time =
        std::chrono::ceil<std::chrono::milliseconds>(next->due - std::chrono::steady_clock::now());
    return std::clamp(time, std::chrono::milliseconds(0), surroundings.idle);
}

// A token shows that the service is there and knows the account.
bool Lane::isOver()
{
    try {
        session->connect();
    } catch (const till::Error& error) {
        pauseFor(error.message());
        // The lane that tries is the one that gives up.
        if (surroundings.untilEmpty && pause.isLongest())
            pause.stop();
        return false;
    }
    isConnected = true;
    claims.setTrouble({});
    surroundings.showTrouble({});
    return true;
}

void Lane::send(const Claim& claim)
{
    const QJsonObject json = QJsonDocument::fromJson(claim.entry.text).object();
    const till::QueuedReceipt queued{claim.entry.file, claim.entry.line, till::toReceipt(json)};
    keepWatch(claim);
    till::Registrar registrar(session->fiscalRegister(), session->transport());
    auto begun = registrar.begin(queued);
    session->transport().setGate({});
    // The driver took it for a fault of the receipt.
    if (storeFailure)
        std::rethrow_exception(std::exchange(storeFailure, {}));
    if (auto* const result = std::get_if<ReceiptResult>(&begun))
        return conclude(claim, std::move(*result), hasSameContent);
    auto& awaited = std::get<till::AwaitedReceipt>(begun);
    const auto due = std::chrono::steady_clock::now() + awaited.pause;
    underWay.push_back({claim, std::move(awaited), hasSameContent, due});
}

void Lane::conclude(const Claim& claim, ReceiptResult result, bool isSameContent)
{
    if (result.compared == till::Comparison::Total && claim.entry.maybeSent && isSameContent)
        result.compared = till::Comparison::Content;
    Judgement judgement = judge(claim.entry, result, session->transport().seen(), isSameContent);
    judgement.ending.result = surroundings.toLine(result);
    // That it was not sent then says nothing of the register.
    if (!claims.conclude(claim, judgement.ending))
        return surroundings.say(
            Text::tr("%1: another worker has taken this receipt over").arg(claim.entry.id));
    if (judgement.ending.isHeld)
        surroundings.say(
            Text::tr("%1: set aside until a person looks at it: frhost queue show %1").arg(claim.entry.id));
    if (!judgement.trouble.isEmpty()) {
        pauseFor(judgement.trouble);
        pause.begin();
        return;
    }
    if (pause.forget())
        surroundings.say(Text::tr("The register works again."));
}

// Nothing is sent by a worker that has lost the receipt. Where the configuration or the plugin has changed
// since the receipt was composed last, another content goes out under its id; that is written down first.
void Lane::keepWatch(const Claim& claim)
{
    hasSameContent = true;
    session->transport().setGate([this, claim](const QUrl& url, const QByteArray& body) {
        const QByteArray digest = till::readComposed(url, body).digest;
        const bool isNew = hasSameContent && digest != claim.entry.digest;
        bool isOurs = false;
        try {
            isOurs = isNew ? claims.noteContent(claim, digest) : claims.holds(claim);
        } catch (...) {
            storeFailure = std::current_exception();
            throw;
        }
        hasSameContent = hasSameContent && !isNew;
        if (!isOurs)
            throw till::Error(till::Problem::Setup, Text::tr("another worker has taken this receipt over"));
    });
}

void Lane::pauseFor(const QString& trouble)
{
    claims.setTrouble(trouble);
    surroundings.showTrouble(trouble);
    // A trouble that lasts is said once.
    if (pause.isNews(trouble))
        surroundings.say(trouble);
}

} // namespace queue
