#include "queue/work/lane.h"

#include "till/error.h"
#include "till/receipts/receipt.h"
#include "till/sale/registrar.h"
#include "till/text.h"
#include "till/wire/servicecodes.h"

#include <QJsonDocument>

#include <tuple>
#include <utility>

using till::ReceiptResult;
using till::Text;

namespace queue {

namespace {

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
    while (pause.wait([this] { return isOver(); })) {
        // Before the first receipt the account is asked, too. Meanwhile others may have begun a pause.
        if (!isConnected) {
            if (!isOver())
                pause.begin();
            continue;
        }
        if (const auto claim = claims.next())
            carryOut(*claim);
        else if (surroundings.untilEmpty && claims.isDone())
            return true;
        else if (!pause.rest(surroundings.idle))
            break;
    }
    return !(surroundings.untilEmpty && pause.isLongest());
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

void Lane::carryOut(const Claim& claim)
{
    const ReceiptResult result = sell(claim);
    Judgement judgement = judge(claim.entry, result, session->transport().seen(), hasSameContent);
    judgement.ending.result = surroundings.toLine(result);
    if (!claims.conclude(claim, judgement.ending))
        surroundings.say(Text::tr("%1: another worker has taken this receipt over").arg(claim.entry.id));
    else if (judgement.ending.isHeld)
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

ReceiptResult Lane::sell(const Claim& claim)
{
    const QJsonObject json = QJsonDocument::fromJson(claim.entry.text).object();
    const till::QueuedReceipt queued{claim.entry.file, claim.entry.line, till::toReceipt(json)};
    keepWatch(claim);
    till::Registrar registrar(session->fiscalRegister(), session->transport());
    ReceiptResult result = registrar.sell(queued);
    session->transport().setGate({});
    // The driver took it for a fault of the receipt.
    if (storeFailure)
        std::rethrow_exception(std::exchange(storeFailure, {}));
    if (result.compared == till::Comparison::Total && claim.entry.maybeSent && hasSameContent)
        result.compared = till::Comparison::Content;
    return result;
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
