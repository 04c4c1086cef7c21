#include "tests/e2e/support/road.h"

using namespace Qt::Literals::StringLiterals;

Ran sell(const Shop& shop, Road road, const QStringList& files, const QByteArray& input)
{
    if (road == Road::Sell)
        return shop.frhost(QStringList{u"sell"_s} + files, input);
    const Ran added = shop.frhost(QStringList{u"queue"_s, u"add"_s} + files, input);
    // Refused means that the queue has receipts already, and that they were refused.
    constexpr int refused = 3;
    if (added.exitCode != 0 && added.exitCode != refused)
        return added;
    const Ran worked = shop.frhost({u"queue"_s, u"work"_s, u"--until-empty"_s});
    EXPECT_EQ(worked.exitCode, 0) << worked.err.toStdString();
    return shop.frhost(QStringList{u"queue"_s, u"wait"_s} + added.columns({u"id"_s}));
}

std::string roadName(const testing::TestParamInfo<Road>& info)
{
    return info.param == Road::Sell ? "BySell" : "ByTheQueue";
}
