#include "hostcli/queue/views/entryjson.h"
#include "hostcli/queue/views/metrics.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace frhost;

TEST(QueueViews, TellTheZoneOfATime)
{
    queue::Entry entry;
    entry.added = 1'000'000'000'123;
    const queue::Event event{1, 1'100'000'000'001, u"added"_s, 0, {}, {}};
    const QJsonObject json = wholeJson(entry, {event});
    EXPECT_EQ(json.value(u"added"_s).toString(), u"2001-09-09T04:46:40.123+03:00"_s);
    EXPECT_EQ(json.value(u"changed"_s).toString(), u"1970-01-01T03:00:00.000+03:00"_s);
    EXPECT_EQ(json.value(u"events"_s)[0][u"at"_s].toString(), u"2004-11-09T14:33:20.001+03:00"_s);
}

// A counter must never fall.
TEST(QueueViews, CallNothingACounterThatIsPruned)
{
    queue::Overview overview;
    overview.events[u"finished"_s] = 3;
    const QByteArray text = openMetrics(overview, u"shop \"1\""_s);
    EXPECT_TRUE(text.contains("# TYPE frhost_queue_events gauge\n"));
    EXPECT_TRUE(text.contains("\nfrhost_queue_events{register=\"shop \\\"1\\\"\",event=\"finished\"} 3\n"));
    EXPECT_FALSE(text.contains("counter") || text.contains("_total"));
}

} // namespace
