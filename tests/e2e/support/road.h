#pragma once

#include "tests/e2e/support/shop.h"

#include <gtest/gtest.h>

/// How receipts get to the service: at once, or by the shop's queue.
enum class Road
{
    Sell,
    Queue,
};

/// Sells the receipts of the files; what is left is what `sell` leaves, whichever way they take: by the
/// queue, that of `queue add` where it fails, and that of `queue wait` otherwise.
[[nodiscard]] Ran sell(const Shop& shop, Road road, const QStringList& files, const QByteArray& input = {});

[[nodiscard]] std::string roadName(const testing::TestParamInfo<Road>& info);
