#include "tests/queue/properties/world.h"
#include "tests/queue/store/storetest.h"

#include <rapidcheck.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class StoreProperties : public testing::TestWithParam<PlaceKind>
{
};
STORE_TEST_SUITE(StoreProperties);

// Long enough for workers to lose receipts and to wake up late.
TEST_P(StoreProperties, EveryStepHappensAsAWholeOrNotAtAllWhereverItsProcessDies)
{
    const TestPlace where(GetParam());
    World world(where.place());
    EXPECT_TRUE(
        rc::check([&world] { world.live(*rc::gen::resize(100, rc::gen::arbitrary<std::vector<Step>>())); }));
    for (const auto& [what, times] : world.tally)
        RecordProperty(what.toStdString(), times);
    // Whatever must be tried has been; what is rare, in a long run.
    for (const char* what : {"died", "died while enrolling", "refused", "concluded", "left"})
        EXPECT_GT(world.tally[QString::fromLatin1(what)], 0) << what;
    const bool isLong = world.tally[u"lives"_s] >= 200;
    for (const char* what : {"stale", "taken 2", "replaced", "pruned 1"})
        EXPECT_TRUE(!isLong || world.tally[QString::fromLatin1(what)] > 0) << what;
    EXPECT_EQ(world.tally[u"severed"_s] > 0, GetParam() == PlaceKind::Postgres);
}

} // namespace
