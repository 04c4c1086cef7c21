#include "tests/queue/properties/deeds.h"

#include "queue/store/upkeep.h"
#include "tests/queue/store/storetest.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using queue::State;

namespace {

constexpr EndingKind endings[] = {
    {.state = State::Registered, .isProven = true},
    {.state = State::Registered, .isProven = true},
    {.state = State::Registered},
    {.state = State::Refused},
    {.state = State::Failed},
    {.state = State::Unknown, .fruitless = 1, .due = Due::Later},
    {.state = State::Unknown, .due = Due::Never},
    {.state = State::Unknown},
    {.state = State::Unknown, .isHeld = true},
    {.state = State::Incomplete, .fruitless = 2},
    {.state = State::Incomplete, .isHeld = true, .fruitless = 3},
    {.state = State::Queued, .maybeSent = false},
    {.state = State::Queued, .isHeld = true, .maybeSent = false},
};

std::chrono::milliseconds delayOf(Due due, int serial)
{
    return due == Due::Now ? 0ms : due == Due::Later ? std::chrono::milliseconds(59s) : serial * 1h;
}

const EndingKind& kindIn(const Turn& turn)
{
    return endings[turn.step[3] % std::size(endings)];
}

const queue::Claim* claimIn(const Turn& turn)
{
    const auto& claims = turn.actor.underWay;
    return claims.empty() ? nullptr : &claims[turn.step[2] / 4U % claims.size()];
}

queue::Ending endingIn(const Turn& turn)
{
    const EndingKind& kind = kindIn(turn);
    queue::Ending ending;
    ending.state = kind.state;
    ending.isHeld = kind.isHeld;
    ending.maybeSent = kind.maybeSent;
    ending.fruitless = kind.fruitless;
    ending.delay = delayOf(kind.due, turn.serial);
    ending.result = lineOf(turn.serial);
    if (kind.isProven) {
        ending.uuid = QString::number(turn.serial);
        ending.evidence = till::JournalEvidence{u"99"_s, turn.serial, u"123"_s, 160};
    }
    return ending;
}

// One in four claims is concluded a second time, as no worker should.
QString conclude(Turn& turn)
{
    const queue::Claim* const claim = claimIn(turn);
    if (!claim)
        return u"nothing"_s;
    const bool holds = turn.actor.patient.conclude(*claim, endingIn(turn));
    if (turn.step[2] % 4 != 0)
        turn.actor.underWay.erase(turn.actor.underWay.begin() + (claim - turn.actor.underWay.data()));
    return holds ? u"concluded"_s : u"stale"_s;
}

queue::NewEntry entryFor(const QString& id, const QString& goods)
{
    return newEntry(id, goods.toLatin1().constData());
}

QString word(queue::Added added)
{
    return added == queue::Added::New ? u"new"_s : u"known"_s;
}

QString addSeveral(Turn& turn)
{
    QStringList words;
    storeAll(turn.actor.store, [&](const auto& add) {
        for (int i = 0; i < 3; ++i)
            words << word(add(entryFor(turn.idAt(turn.step[2] + i), turn.goods())));
    });
    return words.join(u' ');
}

QString addSeveralIn(Model& model, const Turn& turn)
{
    const Model before = model;
    QStringList words;
    for (int i = 0; i < 3; ++i)
        words << model.add(turn.where, turn.idAt(turn.step[2] + i), turn.goods());
    if (!words.contains(refusal))
        return words.join(u' ');
    model = before;
    return refusal;
}

QString claim(Turn& turn)
{
    const auto claim = turn.actor.patient.next();
    if (!claim)
        return u"nothing"_s;
    turn.actor.underWay.push_back(*claim);
    return u"%1, attempt %2"_s.arg(claim->entry.id, QString::number(claim->attempt));
}

QString noteContent(Turn& turn)
{
    const queue::Claim* const claim = claimIn(turn);
    if (!claim)
        return u"nothing"_s;
    return turn.actor.patient.noteContent(*claim, QByteArray::number(turn.serial)) ? u"noted"_s : u"stale"_s;
}

bool isImpatient(const Turn& turn)
{
    return turn.step[3] % 3 == 0;
}

QString takeOver(Turn& turn)
{
    auto& claims = isImpatient(turn) ? turn.actor.impatient : turn.actor.patient;
    return u"taken %1"_s.arg(claims.takeOver());
}

// Each other worker is a transaction of its own, in no promised order.
QString takeOverIn(Model& model, const Turn& turn, std::vector<Model>& between)
{
    const Model before = model;
    int taken = 0;
    for (const qint64 other : before.workers) {
        const bool isDead = !turn.living.contains(other);
        if (other == turn.actor.number || (!isDead && !isImpatient(turn)))
            continue;
        for (std::size_t i = between.size(); i-- > 0;) {
            between.push_back(between[i]);
            between.back().takeFrom(other, isDead);
        }
        taken += model.takeFrom(other, isDead);
    }
    return u"taken %1"_s.arg(taken);
}

QString leave(Turn& turn)
{
    if (!turn.actor.underWay.empty())
        return u"busy"_s;
    turn.actor.patient.leave();
    return u"left"_s;
}

QString leaveIn(Model& model, const Turn& turn)
{
    if (!turn.actor.underWay.empty())
        return u"busy"_s;
    model.workers.erase(turn.actor.number);
    return u"left"_s;
}

QString read(Turn& turn)
{
    QString text;
    qint64 last = turn.cursor;
    forEachResult(turn.actor.store, turn.cursor, [&](qint64 cursor, const QByteArray& line) {
        turn.read = serialIn(line);
        text += u" %1"_s.arg(turn.read);
        last = cursor;
        return true;
    });
    turn.cursor = last;
    return text;
}

QString audit(Turn& turn)
{
    const queue::Audit found = auditOf(turn.actor.store);
    return u"%1 %2 %3 %4"_s.arg(found.accepted).arg(found.registered).arg(found.refused).arg(found.underWay) +
           found.findings.join(u' ');
}

QString troubleIn(const Turn& turn)
{
    return turn.step[3] % 2 == 0 ? QString() : u"trouble %1"_s.arg(turn.step[2] % 2);
}

template <auto decide, const char* word>
QString decided(Turn& turn)
{
    decide(turn.actor.store, turn.id());
    return QString::fromLatin1(word);
}

constexpr char heldWord[] = "held";
constexpr char releasedWord[] = "released";
constexpr char cancelledWord[] = "cancelled";
constexpr char retriedWord[] = "retried";

constexpr Deed add{"add", [](Turn& t) { return word(addOne(t.actor.store, entryFor(t.id(), t.goods()))); },
    [](Model& m, const Turn& t, auto&) { return m.add(t.where, t.id(), t.goods()); }};
constexpr Deed addThree{
    "add three", addSeveral, [](Model& m, const Turn& t, auto&) { return addSeveralIn(m, t); }};
constexpr Deed take{
    "claim", claim, [](Model& m, const Turn& t, auto&) { return m.claim(t.where, t.actor.number); }};
constexpr Deed digest{"note another content", noteContent, [](Model& m, const Turn& t, auto&) {
                          const auto* const claim = claimIn(t);
                          return claim ? m.noteContent(*claim, QByteArray::number(t.serial)) : u"nothing"_s;
                      }};
constexpr Deed end{"conclude", conclude, [](Model& m, const Turn& t, auto&) {
                       const auto* const claim = claimIn(t);
                       return claim ? m.conclude(*claim, kindIn(t), t.serial) : u"nothing"_s;
                   }};
constexpr Deed succeed{"take over", takeOver, takeOverIn};
constexpr Deed hold{"hold", decided<queue::hold, heldWord>,
    [](Model& m, const Turn& t, auto&) { return m.hold(t.where, t.id()); }};
constexpr Deed release{"release", decided<queue::release, releasedWord>,
    [](Model& m, const Turn& t, auto&) { return m.release(t.where, t.id()); }};
constexpr Deed cancel{"cancel", decided<queue::cancel, cancelledWord>,
    [](Model& m, const Turn& t, auto&) { return m.cancel(t.where, t.id()); }};
constexpr Deed retry{"retry", decided<queue::retry, retriedWord>,
    [](Model& m, const Turn& t, auto&) { return m.retry(t.where, t.id()); }};
constexpr Deed replace{"retry with a new id",
    [](Turn& t) {
        queue::replace(t.actor.store, t.id(), entryFor(t.successor(), t.goods()));
        return u"replaced"_s;
    },
    [](Model& m, const Turn& t, auto&) { return m.replace(t.where, t.id(), t.successor(), t.goods()); }};
// Also what finished this very moment.
constexpr Deed prune{"prune", [](Turn& t) { return u"pruned %1"_s.arg(queue::prune(t.actor.store, -1min)); },
    [](Model& m, const Turn& t, auto&) { return m.prune(t.where); }};
constexpr Deed pause{"pause",
    [](Turn& t) {
        t.actor.patient.setTrouble(troubleIn(t));
        return overviewOf(t.actor.store).trouble;
    },
    [](Model& m, const Turn& t, auto&) { return m.trouble.at(t.where) = troubleIn(t); }};
constexpr Deed beat{"beat",
    [](Turn& t) {
        t.actor.patient.beat();
        return QString();
    },
    [](Model&, const Turn&, auto&) { return QString(); }};
constexpr Deed part{"leave", leave, [](Model& m, const Turn& t, auto&) { return leaveIn(m, t); }};
constexpr Deed readOn{
    "results", read, [](Model& m, const Turn& t, auto&) { return m.resultsAfter(t.where, t.read); }};
constexpr Deed prove{"audit", audit, [](Model& m, const Turn& t, auto&) { return m.counts(t.where); }};
constexpr Deed ask{"is done", [](Turn& t) { return QString::number(int(t.actor.patient.isDone())); },
    [](Model& m, const Turn& t, auto&) { return QString::number(int(m.isDone(t.where))); }};

constexpr Deed all[] = {add, add, add, addThree, take, take, take, take, end, end, end, end, end, digest,
    succeed, succeed, hold, release, release, cancel, retry, retry, replace, replace, prune, pause, beat,
    part, readOn, prove, ask};

} // namespace

std::span<const Deed> deeds()
{
    return all;
}
