#include "tests/queue/road/till.h"

#include <algorithm>
#include <csignal>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<queue::Event> firstEndIn(const std::vector<queue::Event>& history)
{
    const auto ended = std::ranges::find_if(history, [](const queue::Event& event) {
        return event.attempt == 1 && (event.name == u"finished"_s || event.name == u"returned"_s);
    });
    return ended == history.end() ? std::nullopt : std::optional(*ended);
}

} // namespace

QueueTill::QueueTill(const QString& url)
    : shop(url)
    , registerAddress(queue::registerAddress(url, u"shop_1"_s))
{
    shop.configureQueue(u"store"_s, place());
    shop.configureQueue(u"parallel"_s, u"64"_s);
}

Ran QueueTill::queue(const QStringList& arguments, const QByteArray& input) const
{
    return shop.frhost(QStringList{u"queue"_s} + arguments, input);
}

Ran QueueTill::add(const QStringList& ids) const
{
    return queue({u"add"_s, shop.receipts(ids)});
}

bool QueueTill::tryOnce(const QStringList& ids) const
{
    // It says more than a pipe holds.
    const QString quiet = u"exec \"$0\" \"$@\" 2>'%1'"_s.arg(folder.filePath(u"worker.log"_s));
    Running worker(
        u"sh"_s, QStringList{u"-c"_s, quiet, frhostProgram()} + shop.arguments({u"queue"_s, u"work"_s}));
    const bool isTried = comesTrue([&] {
        queue::Store read = store();
        return std::ranges::all_of(ids, [&](const QString& id) {
            return firstEndIn(historyOf(read, read.find(id).value())).has_value();
        });
    });
    worker.signal(SIGKILL);
    return isTried;
}

queue::Event QueueTill::firstEnd(const QString& id) const
{
    queue::Store read = store();
    return firstEndIn(historyOf(read, read.find(id).value())).value();
}

queue::Entry QueueTill::entry(const QString& id) const
{
    return store().find(id).value();
}
