#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

// The first of the payments has the whole sum, the others nothing.
Json payments(std::size_t count)
{
    Json all(count, Json{{"type", 1}, {"sum", 0}});
    if (count > 0)
        all[0]["sum"] = 150.5;
    return all;
}

Json vats(std::size_t count)
{
    return Json(count, Json{{"type", "vat10"}});
}

Json settledWith(const Json& sum)
{
    Json receipt = goodReceipt()["receipt"];
    receipt["items"][0]["sum"] = receipt["payments"][0]["sum"] = receipt["total"] = sum;
    return receipt;
}

} // namespace

std::vector<Row> sumRows()
{
    return {
        {"no payments", 'd', "/receipt/payments", payments(0),
            {"TooFewItems: #/receipt.payments, NumberTooBig: #/receipt.total",
                "TooFewItems: #/receipt.payments, NumberTooBig: #/receipt.total",
                "TooFewItems: #/receipt.payments"}},
        {"10 payments", 'd', "/receipt/payments", payments(10), accepted()},
        {"11 payments", 'd', "/receipt/payments", payments(11), refused("TooManyItems: #/receipt.payments")},
        {"a payment that is not an object", 'd', "/receipt/payments", Json::array({5}),
            refused("ObjectExpected: #/receipt.payments[0]")},
        {"a payment without type", 'd', "/receipt/payments/0/type", "absent",
            refused("PropertyRequired: #/receipt.payments[0].type")},
        {"payment of type 0", 'd', "/receipt/payments/0/type", 0, accepted()},
        {"payment of type -1", 'd', "/receipt/payments/0/type", -1,
            refused("NumberTooSmall: #/receipt.payments[0].type")},
        {"payment of type 9", 'd', "/receipt/payments/0/type", 9, accepted()},
        {"payment of type 10", 'd', "/receipt/payments/0/type", 10,
            refused("NumberTooBig: #/receipt.payments[0].type")},
        {"payment of type 1.5", 'd', "/receipt/payments/0/type", 1.5,
            refused("NumberNotMultipleOf: #/receipt.payments[0].type")},
        {"a payment without sum", 'd', "/receipt/payments/0/sum", "absent",
            refused("PropertyRequired: #/receipt.payments[0].sum")},
        {"a negative payment", 'd', "/receipt/payments/0/sum", -0.01,
            {"NumberTooSmall: #/receipt.payments[0].sum, NumberTooBig: #/receipt.total",
                "NumberTooSmall: #/receipt.payments[0].sum, NumberTooBig: #/receipt.total",
                "NumberTooSmall: #/receipt.payments[0].sum"}},
        {"a payment with three decimals", 'd', "/receipt/payments/0/sum", 150.505,
            refused("NumberNotMultipleOf: #/receipt.payments[0].sum")},
        {"payments that differ from the total", 'o', "/receipt/payments/0/sum", 150.51,
            refusedByLetter("NumberTooSmall: #/receipt.total")},
        {"payment of 42949672.95", 'd', "/receipt/payments/0/sum", 42949672.95,
            refusedByLetter("NumberTooSmall: #/receipt.total")},
        {"payment of 42949672.96", 'd', "/receipt/payments/0/sum", 42949672.96,
            {"NumberTooBig: #/receipt.payments[0].sum, NumberTooSmall: #/receipt.total",
                "NumberTooSmall: #/receipt.total", ""}},
        {"payment of 10000000000", 'd', "/receipt/payments/0/sum", 10'000'000'000,
            {"NumberTooBig: #/receipt.payments[0].sum, NumberTooSmall: #/receipt.total",
                "NumberTooSmall: #/receipt.total", ""}},
        {"payment of 10000000000.01", 'd', "/receipt/payments/0/sum", 10'000'000'000.01,
            refused("NumberTooBig: #/receipt.payments[0].sum")},

        {"no total", 'd', "/receipt/total", "absent", refused("PropertyRequired: #/receipt.total")},
        {"a total that is a text", 'd', "/receipt/total", "150.50",
            refused("NumberExpected: #/receipt.total")},
        {"a total with three decimals", 'd', "/receipt/total", 150.505,
            refused("NumberNotMultipleOf: #/receipt.total")},
        {"a negative total", 'r', "/receipt/total", -1, refused("NumberTooSmall: #/receipt.total")},
        {"total of 10000000000.01", 'd', "/receipt/total", 10'000'000'000.01,
            refused("NumberTooBig: #/receipt.total")},
        {"items that differ from the total by 99 kopecks", 'd', item + "/sum", 151.49, accepted()},
        {"items that differ from the total by a rouble", 'd', item + "/sum", 151.50,
            refused("NumberTooSmall: #/receipt.total")},
        {"items below the total by 99 kopecks", 'd', item + "/sum", 149.51, accepted()},
        {"items below the total by a rouble", 'd', item + "/sum", 149.50,
            refused("NumberTooBig: #/receipt.total")},
        {"a receipt of 42949672.95", 'd', "/receipt", settledWith(42949672.95), accepted()},
        {"a receipt of 42949672.96", 'd', "/receipt", settledWith(42949672.96),
            refusedInOlder("NumberTooBig: #/receipt.items[0].sum, NumberTooBig: #/receipt.payments[0].sum, "
                           "NumberTooBig: #/receipt.total")},
        {"a receipt of 10000000000", 'o', "/receipt", settledWith(10'000'000'000),
            refusedInOlder("NumberTooBig: #/receipt.items[0].sum, NumberTooBig: #/receipt.payments[0].sum, "
                           "NumberTooBig: #/receipt.total")},

        {"vats that are not an array", 'd', "/receipt/vats", Json::object(),
            refused("ArrayExpected: #/receipt.vats")},
        {"vats that are not objects", 'd', "/receipt/vats", Json::array({5}),
            refused("ObjectExpected: #/receipt.vats[0]")},
        {"6 vats", 'd', "/receipt/vats", vats(6), accepted()},
        {"7 vats", 'd', "/receipt/vats", vats(7), refusedInNewer("TooManyItems: #/receipt.vats")},
        {"101 vats", '?', "/receipt/vats", vats(101), refused("TooManyItems: #/receipt.vats")},
        {"vats without type", 'd', "/receipt/vats", Json::array({{{"sum", 1}}}),
            refused("PropertyRequired: #/receipt.vats[0].type")},
        {"an unknown type among vats", 'd', "/receipt/vats", Json::array({{{"type", "vat25"}}}),
            refused("NotInEnumeration: #/receipt.vats[0].type")},
        {"vats of a negative sum", 'd', "/receipt/vats", Json::array({{{"type", "vat10"}, {"sum", -0.01}}}),
            refused("NumberTooSmall: #/receipt.vats[0].sum")},
        {"vats of 42949672.95", 'd', "/receipt/vats",
            Json::array({{{"type", "vat10"}, {"sum", 42949672.95}}}), accepted()},
        {"vats of 42949672.96", 'd', "/receipt/vats",
            Json::array({{{"type", "vat10"}, {"sum", 42949672.96}}}),
            refusedInOlder("NumberTooBig: #/receipt.vats[0].sum")},
        {"vats of 10000000000", 'd', "/receipt/vats",
            Json::array({{{"type", "vat10"}, {"sum", 10'000'000'000}}}),
            refusedInOlder("NumberTooBig: #/receipt.vats[0].sum")},
        {"vats of 10000000000.01", 'd', "/receipt/vats",
            Json::array({{{"type", "vat10"}, {"sum", 10'000'000'000.01}}}),
            refused("NumberTooBig: #/receipt.vats[0].sum")},
    };
}

} // namespace editions
