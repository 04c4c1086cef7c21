#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

Json ofInternetWithoutClient()
{
    Json receipt = goodReceipt()["receipt"];
    receipt.erase("client");
    receipt["internet"] = true;
    return receipt;
}

} // namespace

std::vector<Row> envelopeRows()
{
    return {
        {"timestamp of the service", 'd', "/timestamp", "01.03.2026 10:00:00", accepted()},
        {"no timestamp", 'd', "/timestamp", "absent", refused("PropertyRequired: #/timestamp")},
        {"timestamp that is not a text", 'd', "/timestamp", 5, refused("StringExpected: #/timestamp")},
        {"timestamp without seconds", 'd', "/timestamp", "01.03.2026 10:00",
            refused("PatternMismatch: #/timestamp")},
        {"timestamp on a day that does not exist", 'd', "/timestamp", "31.02.2026 10:00:00",
            refused("PatternMismatch: #/timestamp")},
        {"timestamp in another form", 'd', "/timestamp", "2026-03-01 10:00:00",
            refused("PatternMismatch: #/timestamp")},
        {"timestamp in ISO form with a zone", 'r', "/timestamp", "2026-03-01T10:00:00+03:00",
            refusedByLetter("PatternMismatch: #/timestamp")},
        {"timestamp in ISO form in UTC", 'r', "/timestamp", "2026-03-01T07:00:00Z",
            refusedByLetter("PatternMismatch: #/timestamp")},
        {"no external_id", 'd', "/external_id", "absent", refused("PropertyRequired: #/external_id")},
        {"external_id of 128 characters", 'd', "/external_id", letters(128), accepted()},
        {"external_id of 129", 'd', "/external_id", letters(129), refused("StringTooLong: #/external_id")},
        {"an empty external_id", 'd', "/external_id", "", refused("StringTooShort: #/external_id")},
        {"no receipt", 'd', "/receipt", "absent", refused("PropertyRequired: #/receipt")},
        {"no client", '?', "/receipt/client", "absent",
            refusedByLetter("PropertyRequired: #/receipt.client")},
        {"a client that is not an object", 'd', "/receipt/client", 5,
            refused("ObjectExpected: #/receipt.client")},
        {"neither email nor phone", 'd', "/receipt/client", {{"email", ""}, {"phone", ""}},
            refused("PropertyRequired: #/receipt.client")},
        {"client.phone without an email", 'd', "/receipt/client", {{"phone", "+79990000000"}}, accepted()},
        {"client.email of 64 characters", 'd', "/receipt/client/email", letters(64), accepted()},
        {"client.email of 65 characters", 'd', "/receipt/client/email", letters(65),
            refused("StringTooLong: #/receipt.client.email")},
        {"client.phone of 18 digits after the plus", 'd', "/receipt/client/phone", "+123456789012345678",
            accepted()},
        {"client.phone of 19 digits after the plus", 'd', "/receipt/client/phone", "+1234567890123456789",
            refusedInOlder("PatternMismatch: #/receipt.client.phone")},
        {"client.phone of 17 digits", 'd', "/receipt/client/phone", "12345678901234567", accepted()},
        {"client.phone of 18 digits", 'd', "/receipt/client/phone", "123456789012345678",
            refusedInOlder("PatternMismatch: #/receipt.client.phone")},
        {"client.phone that is a number", 'd', "/receipt/client/phone", 79990000000,
            refused("StringExpected: #/receipt.client.phone")},
        {"a formatted client.phone", 'd', "/receipt/client/phone", "8 (999) 000-00-00",
            refusedInOlder("PatternMismatch: #/receipt.client.phone")},
        {"client.phone of 64 characters", 'd', "/receipt/client/phone", std::string(64, '5'),
            refusedInOlder("PatternMismatch: #/receipt.client.phone")},
        {"client.phone of 65 characters", 'd', "/receipt/client/phone", std::string(65, '5'),
            {"PatternMismatch: #/receipt.client.phone", "StringTooLong: #/receipt.client.phone",
                "StringTooLong: #/receipt.client.phone"}},
        {"client.inn of 10 digits", 'd', "/receipt/client/inn", "7700000001", accepted()},
        {"client.inn of 12 digits", 'd', "/receipt/client/inn", "770000000012", accepted()},
        {"a malformed client.inn", 'd', "/receipt/client/inn", "77000000001",
            refusedInNewer("PatternMismatch: #/receipt.client.inn")},
        {"internet false", 'd', "/receipt/internet", false, accepted()},
        {"internet true with a client", 'd', "/receipt/internet", true, accepted()},
        {"internet true without a client", 'd', "/receipt", ofInternetWithoutClient(),
            refused("PropertyRequired: #/receipt.client")},
        {"internet that is a text", 'd', "/receipt/internet", "true",
            refusedInNewer("BooleanExpected: #/receipt.internet")},

        {"no company", 'd', "/receipt/company", "absent", refused("PropertyRequired: #/receipt.company")},
        {"no company.email", 'o', "/receipt/company/email", "absent",
            refusedByLetter("PropertyRequired: #/receipt.company.email")},
        {"an empty company.email", 'd', "/receipt/company/email", "",
            refused("StringTooShort: #/receipt.company.email")},
        {"company.email of 64 characters", 'd', "/receipt/company/email", letters(64), accepted()},
        {"company.email of 65 characters", 'd', "/receipt/company/email", letters(65),
            refused("StringTooLong: #/receipt.company.email")},
        {"no company.inn", 'd', "/receipt/company/inn", "absent",
            refused("PropertyRequired: #/receipt.company.inn")},
        {"company.inn of 12 digits", 'd', "/receipt/company/inn", "770000000012", accepted()},
        {"company.inn of 11 digits", 'd', "/receipt/company/inn", "77000000001",
            refused("PatternMismatch: #/receipt.company.inn")},
        {"company.inn with letters", 'd', "/receipt/company/inn", "77000000ab",
            refused("PatternMismatch: #/receipt.company.inn")},
        {"no payment_address", 'd', "/receipt/company/payment_address", "absent",
            refused("PropertyRequired: #/receipt.company.payment_address")},
        {"an empty payment_address", 'd', "/receipt/company/payment_address", "",
            refused("StringTooShort: #/receipt.company.payment_address")},
        {"payment_address of 256 characters", 'd', "/receipt/company/payment_address", letters(256),
            accepted()},
        {"payment_address of 257 characters", 'd', "/receipt/company/payment_address", letters(257),
            refused("StringTooLong: #/receipt.company.payment_address")},
        {"no sno", 'd', "/receipt/company/sno", "absent", accepted()},
        {"an unknown sno", 'd', "/receipt/company/sno", "simple",
            refused("NotInEnumeration: #/receipt.company.sno")},
        {"cashier of 64 characters", 'd', "/receipt/cashier", letters(64), accepted()},
        {"cashier of 65 characters", 'd', "/receipt/cashier", letters(65),
            refusedInNewer("StringTooLong: #/receipt.cashier")},
    };
}

} // namespace editions
