#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

// The first of the items has the whole sum, the others nothing.
Json items(std::size_t count)
{
    Json one = goodReceipt()["receipt"]["items"][0];
    one["sum"] = 0;
    Json all(count, one);
    if (count > 0)
        all[0]["sum"] = 150.5;
    return all;
}

} // namespace

std::vector<Row> itemRows()
{
    return {
        {"no items", 'd', "/receipt/items", items(0),
            refused("TooFewItems: #/receipt.items, NumberTooBig: #/receipt.total")},
        {"100 items", 'd', "/receipt/items", items(100), accepted()},
        {"101 items", 'd', "/receipt/items", items(101), refused("TooManyItems: #/receipt.items")},
        {"an item that is not an object", 'd', item, 5, refused("ObjectExpected: #/receipt.items[0]")},
        {"an item without name", 'd', item + "/name", "absent",
            refused("PropertyRequired: #/receipt.items[0].name")},
        {"an empty name", 'd', item + "/name", "", refused("StringTooShort: #/receipt.items[0].name")},
        {"name of 128 characters", 'd', item + "/name", letters(128), accepted()},
        {"name of 129 characters", 'd', item + "/name", letters(129),
            refused("StringTooLong: #/receipt.items[0].name")},
        {"an item without price", 'd', item + "/price", "absent",
            refused("PropertyRequired: #/receipt.items[0].price")},
        {"a price that is a text", 'd', item + "/price", "75.25",
            refused("NumberExpected: #/receipt.items[0].price")},
        {"price of nothing", 'd', item + "/price", 0, accepted()},
        {"price of 42949672.95", 'd', item + "/price", 42949672.95, accepted()},
        {"price of 42949672.96", 'd', item + "/price", 42949672.96,
            refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
        {"price of 10000000000", 'd', item + "/price", 10'000'000'000,
            refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
        {"price of 9999999999.99", 'd', item + "/price", 9'999'999'999.99,
            refusedInOlder("NumberTooBig: #/receipt.items[0].price")},
        {"price of 10000000000.01", 'd', item + "/price", 10'000'000'000.01,
            refused("NumberTooBig: #/receipt.items[0].price")},
        {"price with three decimals", 'd', item + "/price", 33.333,
            refused("NumberNotMultipleOf: #/receipt.items[0].price")},
        {"a negative price", 'd', item + "/price", -0.01,
            refused("NumberTooSmall: #/receipt.items[0].price")},
        {"an item without quantity", 'd', item + "/quantity", "absent",
            refused("PropertyRequired: #/receipt.items[0].quantity")},
        {"quantity of nothing", 'd', item + "/quantity", 0,
            refused("NumberTooSmall: #/receipt.items[0].quantity")},
        {"quantity of 0.001", 'd', item + "/quantity", 0.001, accepted()},
        {"quantity with three decimals", 'd', item + "/quantity", 1.234, accepted()},
        {"quantity with four decimals", 'o', item + "/quantity", 1.2345,
            refusedInOlder("NumberNotMultipleOf: #/receipt.items[0].quantity")},
        {"quantity of 0.000001", 'd', item + "/quantity", 0.000001,
            refusedInOlder("NumberTooSmall: #/receipt.items[0].quantity")},
        {"quantity with six decimals", 'd', item + "/quantity", 1.000002,
            refusedInOlder("NumberNotMultipleOf: #/receipt.items[0].quantity")},
        {"quantity of 0.0000005", 'd', item + "/quantity", 0.0000005,
            refused("NumberTooSmall: #/receipt.items[0].quantity")},
        {"quantity of 1.0000005", 'd', item + "/quantity", 1.0000005,
            Answers{"", "NumberNotMultipleOf: #/receipt.items[0].quantity",
                "NumberNotMultipleOf: #/receipt.items[0].quantity"}},
        {"quantity of 99999.999", 'd', item + "/quantity", 99999.999, accepted()},
        {"quantity of 100000", 'd', item + "/quantity", 100000,
            refused("NumberTooBig: #/receipt.items[0].quantity")},
        {"an item without sum", 'd', item + "/sum", "absent",
            refused("PropertyRequired: #/receipt.items[0].sum")},
        {"a negative sum", 'd', item + "/sum", -0.01,
            refused("NumberTooSmall: #/receipt.items[0].sum, NumberTooBig: #/receipt.total")},
        {"sum with three decimals", 'd', item + "/sum", 150.505,
            refused("NumberNotMultipleOf: #/receipt.items[0].sum")},
        {"sum of 42949672.95", 'd', item + "/sum", 42949672.95, refused("NumberTooSmall: #/receipt.total")},
        {"sum of 42949672.96", 'd', item + "/sum", 42949672.96,
            {"NumberTooBig: #/receipt.items[0].sum, NumberTooSmall: #/receipt.total",
                "NumberTooSmall: #/receipt.total", "NumberTooSmall: #/receipt.total"}},
        {"sum of 10000000000.01", 'd', item + "/sum", 10'000'000'000.01,
            refused("NumberTooBig: #/receipt.items[0].sum")},
        {"measurement_unit of 16 characters", 'd', item + "/measurement_unit", letters(16), accepted()},
        {"measurement_unit of 17 characters", 'd', item + "/measurement_unit", letters(17),
            refusedInNewer("StringTooLong: #/receipt.items[0].measurement_unit")},
        {"an unknown payment_method", 'd', item + "/payment_method", "cash",
            refused("NotInEnumeration: #/receipt.items[0].payment_method")},
        {"an unknown payment_object", 'd', item + "/payment_object", "milk",
            refused("NotInEnumeration: #/receipt.items[0].payment_object")},
        {"agent_info that is not an object", 'd', item + "/agent_info", 5,
            refused("ObjectExpected: #/receipt.items[0].agent_info, PropertyRequired: "
                    "#/receipt.items[0].supplier_info")},
        {"agent_info without supplier_info", 'd', item + "/agent_info", {{"type", "attorney"}},
            refused("PropertyRequired: #/receipt.items[0].supplier_info")},

        {"a vat that is not an object", 'd', item + "/vat", 5,
            refused("ObjectExpected: #/receipt.items[0].vat")},
        {"an item without vat", 'o', item + "/vat", "absent",
            refusedByLetter("PropertyRequired: #/receipt.items[0].vat")},
        {"vat without type", 'd', item + "/vat", Json::object(),
            refused("PropertyRequired: #/receipt.items[0].vat.type")},
        {"a wrong vat.sum at first", 'r', item + "/vat/sum", 1, accepted()},
    };
}

} // namespace editions
