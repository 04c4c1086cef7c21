#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

Json vatsOf(std::size_t count)
{
    return Json(count, Json{{"type", "vat10"}});
}

Json paymentsOf(std::size_t count)
{
    return Json(count, Json{{"type", 1}, {"sum", 10}});
}

std::vector<Row> rowsOfSums()
{
    return {
        {"no vats", 'd', "/correction/vats", "absent", refusedInNewer("PropertyRequired: #/correction.vats")},
        {"empty vats", 'd', "/correction/vats", Json::array(),
            refusedInNewer("TooFewItems: #/correction.vats")},
        {"6 vats", 'd', "/correction/vats", vatsOf(6), accepted()},
        {"7 vats", 'd', "/correction/vats", vatsOf(7), refusedInNewer("TooManyItems: #/correction.vats")},
        {"vats that are not objects", 'd', "/correction/vats", Json::array({5}),
            refusedInNewer("ObjectExpected: #/correction.vats[0]")},
        {"an unknown type among vats", 'd', "/correction/vats/0/type", "vat25",
            refusedInNewer("NotInEnumeration: #/correction.vats[0].type")},
        {"vats without sum", 'd', "/correction/vats/0/sum", "absent", accepted()},
        {"vats of 10000000000", 'd', "/correction/vats/0/sum", 10'000'000'000, accepted()},
        {"vats of 10000000000.01", 'd', "/correction/vats/0/sum", 10'000'000'000.01,
            refusedInNewer("NumberTooBig: #/correction.vats[0].sum")},
        {"no payments", 'd', "/correction/payments", "absent",
            refused("PropertyRequired: #/correction.payments")},
        {"empty payments", 'd', "/correction/payments", Json::array(),
            refused("TooFewItems: #/correction.payments")},
        {"10 payments", 'd', "/correction/payments", paymentsOf(10), accepted()},
        {"11 payments", 'd', "/correction/payments", paymentsOf(11),
            refused("TooManyItems: #/correction.payments")},
        {"a payment that is not an object", 'd', "/correction/payments", Json::array({5}),
            refused("ObjectExpected: #/correction.payments[0]")},
        {"payment of type 9", 'd', "/correction/payments/0/type", 9, accepted()},
        {"payment of type 10", 'd', "/correction/payments/0/type", 10,
            refused("NumberTooBig: #/correction.payments[0].type")},
        {"payment of 42949672.95", 'd', "/correction/payments/0/sum", 42949672.95, accepted()},
        {"payment of 42949672.96", 'd', "/correction/payments/0/sum", 42949672.96,
            refusedInOlder("NumberTooBig: #/correction.payments[0].sum")},
        {"payment of 10000000000.01", 'd', "/correction/payments/0/sum", 10'000'000'000.01,
            refused("NumberTooBig: #/correction.payments[0].sum")},
    };
}

} // namespace

std::vector<Row> correctionRows()
{
    std::vector<Row> rows{
        {"a good correction", 'd', "/timestamp", "01.03.2026 10:00:00", accepted()},
        {"no timestamp", 'd', "/timestamp", "absent", refused("PropertyRequired: #/timestamp")},
        {"timestamp in another form", 'd', "/timestamp", "2026-03-01 10:00:00",
            refused("PatternMismatch: #/timestamp")},
        {"timestamp in ISO form with a zone", 'r', "/timestamp", "2026-03-01T10:00:00+03:00",
            refusedByLetter("PatternMismatch: #/timestamp")},
        {"no external_id", 'd', "/external_id", "absent", refused("PropertyRequired: #/external_id")},
        {"an empty external_id", 'd', "/external_id", "", refused("StringTooShort: #/external_id")},
        {"external_id of 128 characters", 'd', "/external_id", letters(128), accepted()},
        {"external_id of 129 characters", 'd', "/external_id", letters(129),
            refused("StringTooLong: #/external_id")},
        {"no correction", 'd', "/correction", "absent", refused("PropertyRequired: #/correction")},
        {"no company", 'd', "/correction/company", "absent",
            refused("PropertyRequired: #/correction.company")},
        {"no company.inn", 'd', "/correction/company/inn", "absent",
            refused("PropertyRequired: #/correction.company.inn")},
        {"company.inn of 11 digits", 'd', "/correction/company/inn", "77000000001",
            refused("PatternMismatch: #/correction.company.inn")},
        {"company.inn of 12 digits", 'd', "/correction/company/inn", "770000000012", accepted()},
        {"no sno", 'd', "/correction/company/sno", "absent", accepted()},
        {"an unknown sno", 'd', "/correction/company/sno", "simple",
            refused("NotInEnumeration: #/correction.company.sno")},
        {"no payment_address", 'd', "/correction/company/payment_address", "absent",
            refused("PropertyRequired: #/correction.company.payment_address")},
        {"payment_address of 256 characters", 'd', "/correction/company/payment_address", letters(256),
            accepted()},
        {"payment_address of 257 characters", 'd', "/correction/company/payment_address", letters(257),
            refused("StringTooLong: #/correction.company.payment_address")},
        {"no correction_info", 'd', "/correction/correction_info", "absent",
            refusedInNewer("PropertyRequired: #/correction.correction_info")},
        {"correction_info that is not an object", 'd', "/correction/correction_info", "self",
            refusedInNewer("ObjectExpected: #/correction.correction_info")},
        {"cashier of 64 characters", 'd', "/correction/cashier", letters(64), accepted()},
        {"cashier of 65 characters", 'd', "/correction/cashier", letters(65),
            refusedInNewer("StringTooLong: #/correction.cashier")},
        {"internet without client", 'd', "/correction/internet", true,
            refusedInNewer("PropertyRequired: #/correction.client")},
    };
    for (const Row& row : rowsOfSums())
        rows.push_back(row);
    return rows;
}

} // namespace editions
