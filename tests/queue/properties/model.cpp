#include "tests/queue/properties/model.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;
using queue::State;

namespace {

constexpr double millisecondsAnHour = 3'600'000;

QString put(Known* known, State state, bool isHeld, const QString& event)
{
    if (!known)
        return refusal;
    known->state = state;
    known->isHeld = isHeld;
    known->hours = 0;
    known->fruitless = 0;
    known->events << event;
    return event;
}

// What a later attempt may be made of, and may be made now.
bool isWaiting(const Known& known)
{
    const bool isOpen =
        known.state == State::Queued || known.state == State::Unknown || known.state == State::Incomplete;
    return isOpen && !known.isHeld;
}

} // namespace

QByteArray lineOf(int serial)
{
    return R"({"recovered":false,"step":)" + QByteArray::number(serial) + '}';
}

int serialIn(const QByteArray& line)
{
    return QJsonDocument::fromJson(line).object().value("step"_L1).toInt(-1);
}

Known* Model::find(std::size_t where, const QString& id)
{
    const auto found = std::ranges::find_if(
        receipts, [&](const Known& known) { return known.where == where && known.id == id; });
    return found == receipts.end() ? nullptr : &*found;
}

QString Model::add(std::size_t where, const QString& id, const QString& goods)
{
    if (const Known* const known = find(where, id))
        return known->goods == goods ? u"known"_s : refusal;
    Known known;
    known.where = where;
    known.id = id;
    known.goods = goods;
    receipts.push_back(known);
    return u"new"_s;
}

// The first to have come, of those that were never put off and of the one that waits for a clock.
QString Model::claim(std::size_t where, qint64 worker)
{
    Known* next = nullptr;
    Known* stuck = nullptr;
    for (Known& known : receipts) {
        if (known.where != where || !isWaiting(known))
            continue;
        if (known.hours == 0 && !next)
            next = &known;
        if (known.hours > 0 && (!stuck || known.hours < stuck->hours))
            stuck = &known;
    }
    if (stuck && (!next || stuck < next))
        next = stuck;
    if (!next)
        return u"nothing"_s;
    next->earlier = next->state;
    next->state = State::Sent;
    ++next->attempt;
    next->maybeSent = true;
    next->owner = worker;
    next->events << u"claimed"_s;
    return u"%1, attempt %2"_s.arg(next->id, QString::number(next->attempt));
}

// The id may belong to another receipt by now, as after prune.
Known* Model::named(const queue::Claim& claim)
{
    const auto found = std::ranges::find(
        receipts, claim.entry.number, [](const Known& known) { return known.number.value; });
    return found == receipts.end() ? nullptr : &*found;
}

Known* Model::owned(const queue::Claim& claim)
{
    Known* const known = named(claim);
    const bool isOwned = known && known->state == State::Sent && known->attempt == claim.attempt;
    return isOwned ? known : nullptr;
}

QString Model::noteContent(const queue::Claim& claim, const QByteArray& digest)
{
    Known* const known = owned(claim);
    if (!known)
        return u"stale"_s;
    known->digest = claim.entry.maybeSent ? QByteArray() : digest;
    known->events << u"recomposed"_s;
    return u"noted"_s;
}

QString Model::conclude(const queue::Claim& claim, const EndingKind& ending, int serial)
{
    Known* const known = owned(claim);
    if (!known) {
        if (Known* const other = named(claim))
            other->events << u"stale"_s;
        return u"stale"_s;
    }
    if (ending.state == State::Registered && !ending.isProven)
        return refusal;
    known->state = ending.state;
    known->isHeld = ending.isHeld;
    known->owner = 0;
    known->maybeSent = ending.maybeSent;
    known->fruitless = ending.fruitless;
    known->hours = ending.due == Due::Now ? 0 : ending.due == Due::Later ? -1 : serial;
    if (ending.isProven) {
        known->uuid = QString::number(serial);
        known->document = serial;
    }
    if (ending.state == State::Registered)
        trouble.at(known->where).clear();
    known->events << (isFinished(ending.state) ? u"finished"_s
                      : ending.isHeld          ? u"setAside"_s
                                               : u"returned"_s);
    if (isFinished(ending.state))
        results.at(known->where).emplace_back(known->id, serial);
    return u"concluded"_s;
}

int Model::takeFrom(qint64 worker, bool isDead)
{
    int taken = 0;
    for (Known& known : receipts) {
        if (known.owner != worker)
            continue;
        known.state = known.earlier == State::Incomplete ? State::Incomplete : State::Unknown;
        known.owner = 0;
        known.hours = 0;
        known.events << u"takenOver"_s;
        ++taken;
    }
    if (isDead)
        workers.erase(worker);
    return taken;
}

Known* Model::unfinished(std::size_t where, const QString& id)
{
    Known* const known = find(where, id);
    return known && !isFinished(known->state) && known->state != State::Sent ? known : nullptr;
}

QString Model::hold(std::size_t where, const QString& id)
{
    Known* const known = unfinished(where, id);
    return known ? put(known, known->state, true, u"held"_s) : refusal;
}

QString Model::release(std::size_t where, const QString& id)
{
    Known* const known = unfinished(where, id);
    return known && known->isHeld ? put(known, known->state, false, u"released"_s) : refusal;
}

QString Model::cancel(std::size_t where, const QString& id)
{
    Known* const known = unfinished(where, id);
    const bool isUnsent = known && known->state == State::Queued && !known->maybeSent;
    return isUnsent ? put(known, State::Cancelled, false, u"cancelled"_s) : refusal;
}

QString Model::retry(std::size_t where, const QString& id)
{
    Known* known = find(where, id);
    if (known && known->state == State::Refused)
        return known->events.contains(u"replaced"_s) ? refusal
                                                     : put(known, State::Queued, false, u"retried"_s);
    known = unfinished(where, id);
    return known ? put(known, known->state, false, u"retried"_s) : refusal;
}

QString Model::replace(std::size_t where, const QString& id, const QString& successor, const QString& goods)
{
    Known* const known = find(where, id);
    const bool isUnregistered = known && (known->state == State::Failed || known->state == State::Refused ||
                                             known->state == State::Cancelled);
    if (!isUnregistered || known->events.contains(u"replaced"_s) || find(where, successor))
        return refusal;
    known->events << u"replaced"_s;
    add(where, successor, goods);
    receipts.back().events << u"replaces"_s;
    return u"replaced"_s;
}

QString Model::prune(std::size_t where)
{
    std::set<QString> removed;
    std::erase_if(receipts, [&](const Known& known) {
        const bool goes = known.where == where && isFinished(known.state);
        if (goes)
            removed.insert(known.id);
        return goes;
    });
    std::erase_if(results.at(where), [&](const auto& result) { return removed.contains(result.first); });
    return u"pruned %1"_s.arg(removed.size());
}

bool Model::isDone(std::size_t where) const
{
    return std::ranges::none_of(receipts, [&](const Known& known) {
        return known.where == where && (isWaiting(known) || known.state == State::Sent);
    });
}

QString Model::resultsAfter(std::size_t where, int serial) const
{
    QString text;
    for (const auto& [id, number] : results.at(where)) {
        if (number > serial)
            text += u" %1"_s.arg(number);
    }
    return text;
}

QString Model::counts(std::size_t where) const
{
    int accepted = 0;
    int registered = 0;
    int finished = 0;
    for (const Known& known : receipts) {
        accepted += known.where == where ? 1 : 0;
        registered += known.where == where && known.state == State::Registered ? 1 : 0;
        finished += known.where == where && isFinished(known.state) ? 1 : 0;
    }
    return u"%1 %2 %3 %4"_s.arg(accepted).arg(registered).arg(finished - registered).arg(accepted - finished);
}

namespace {

Known knownIn(const QSqlQuery& row)
{
    Known known;
    known.number = {row.value(0).toLongLong()};
    known.id = row.value(2).toString();
    known.goods = QJsonDocument::fromJson(row.value(3).toByteArray()).object().value("goods"_L1).toString();
    known.state = queue::stateOf(row.value(4).toString()).value();
    known.isHeld = row.value(5).toBool();
    known.attempt = row.value(6).toInt();
    known.maybeSent = row.value(7).toBool();
    known.fruitless = row.value(8).toInt();
    known.owner = row.value(9).toLongLong();
    if (const qint64 due = row.value(10).toLongLong(); due != 0) {
        const int hours = qRound(static_cast<double>(due - row.value(11).toLongLong()) / millisecondsAnHour);
        known.hours = hours == 0 ? -1 : hours;
    }
    known.digest = row.value(12).toByteArray();
    known.uuid = row.value(13).toString();
    known.document = row.value(14).toLongLong();
    known.earlier = queue::stateOf(row.value(15).toString()).value();
    known.events.clear();
    return known;
}

} // namespace

Model Model::of(queue::Store& store, const std::array<qint64, registers>& numbers)
{
    Model model;
    till::Database& database = store.database();
    std::map<qint64, std::size_t> places;
    QSqlQuery row = database.query(
        "SELECT number, register, id, text, state, held, attempt, maybeSent, fruitless, worker,"
        " due, @now, digest, uuid, document, earlier FROM receipts ORDER BY number");
    while (row.next()) {
        places.emplace(row.value(0).toLongLong(), model.receipts.size());
        model.receipts.push_back(knownIn(row));
        model.receipts.back().where = row.value(1).toLongLong() == numbers[0] ? 0 : 1;
    }
    row = database.query("SELECT receipt, event, detail FROM events ORDER BY number");
    while (row.next()) {
        const auto place = places.find(row.value(0).toLongLong());
        if (place == places.end())
            throw std::runtime_error("there is an event \"" + row.value(1).toString().toStdString() +
                                     "\" of a receipt that is not there");
        Known& known = model.receipts[place->second];
        known.events << row.value(1).toString();
        if (known.events.last() == "finished"_L1)
            model.results.at(known.where).emplace_back(known.id, serialIn(row.value(2).toByteArray()));
    }
    row = database.query("SELECT number FROM workers WHERE ended = 0");
    while (row.next())
        model.workers.insert(row.value(0).toLongLong());
    row = database.query("SELECT number, trouble FROM registers");
    while (row.next())
        model.trouble.at(row.value(0).toLongLong() == numbers[0] ? 0 : 1) = row.value(1).toString();
    return model;
}

QString Model::described() const
{
    QStringList lines;
    for (const Known& known : receipts)
        lines << u"  %1/%2 %3 %4%5 attempt %6 by %7%8 fruitless %9"_s.arg(QString::number(known.where),
                     known.id, known.goods, nameOf(known.state), known.isHeld ? u" held"_s : QString(),
                     QString::number(known.attempt), QString::number(known.owner),
                     known.maybeSent ? u" maybe sent"_s : QString(), QString::number(known.fruitless)) +
                     u" in %1 h, digest %2, uuid %3, document %4: %5"_s.arg(QString::number(known.hours),
                         QString::fromLatin1(known.digest), known.uuid, QString::number(known.document),
                         known.events.join(u' '));
    for (std::size_t where = 0; where < registers; ++where) {
        lines << u"  trouble %1: %2; results:"_s.arg(QString::number(where), trouble.at(where));
        lines.last() += resultsAfter(where, -1);
    }
    lines << u"  workers:"_s;
    for (const qint64 worker : workers)
        lines.last() += u' ' + QString::number(worker);
    return lines.join(u'\n');
}
