#include "emulator/rules/receiptrules.h"

namespace emulator {

namespace {

constexpr std::int64_t largestAmount = 4'294'967'295; // kopecks
constexpr std::int64_t largestQuantity = 99'999'999;  // thousandths

using enum FieldKind;
using enum Need;

const FieldRule receiptTable[] = {
    {"timestamp", Timestamp, Required},
    {"external_id", Text, Required, 1, 128},
    {"receipt", Object, Required},
    {"receipt.client", Object, Required},
    {"receipt.client.email", Text, Optional, 0, 64},
    {"receipt.client.phone", Phone, Optional},
    {"receipt.company", Object, Required},
    {"receipt.company.email", Text, Required, 1, 64},
    {"receipt.company.sno", OneOf, Optional, 0, 0, &Lists::taxationSystems},
    {"receipt.company.inn", Inn, Required},
    {"receipt.company.payment_address", Text, Required, 1, 256},
    {"receipt.items", Array, Required, 1, mostItems},
    {"receipt.items[]", Object, Required},
    {"receipt.items[].name", Text, Required, 1, 128},
    {"receipt.items[].price", Money, Required, 0, largestAmount},
    {"receipt.items[].quantity", Quantity, Required, 1, largestQuantity},
    {"receipt.items[].sum", Money, Required, 0, largestAmount},
    {"receipt.items[].payment_method", OneOf, Optional, 0, 0, &Lists::paymentMethods},
    {"receipt.items[].payment_object", OneOf, Optional, 0, 0, &Lists::paymentObjects},
    {"receipt.items[].nomenclature_code", HexBytes, Optional, 1, 32},
    {"receipt.items[].vat", Object, Optional},
    {"receipt.items[].vat.type", OneOf, Required, 0, 0, &Lists::vatTypes},
    {"receipt.items[].agent_info", Object, Optional},
    {"receipt.items[].agent_info.type", OneOf, Required, 0, 0, &Lists::agentTypes},
    {"receipt.items[].supplier_info", Object, Optional},
    {"receipt.items[].supplier_info.phones", Array, Optional, 0, 100},
    {"receipt.items[].supplier_info.phones[]", Phone, Required},
    {"receipt.vats", Array, Optional, 0, 100},
    {"receipt.vats[]", Object, Required},
    {"receipt.vats[].type", OneOf, Required, 0, 0, &Lists::vatTypes},
    {"receipt.vats[].sum", Money, Optional, 0, largestAmount},
    {"receipt.payments", Array, Required, 1, 10},
    {"receipt.payments[]", Object, Required},
    {"receipt.payments[].type", Integer, Required, 0, 9},
    {"receipt.payments[].sum", Money, Required, 0, largestAmount},
    {"receipt.total", Money, Required, 0, largestAmount},
};

const FieldRule correctionTable[] = {
    {"timestamp", Timestamp, Required},
    {"external_id", Text, Required, 1, 128},
    {"correction", Object, Required},
    {"correction.company", Object, Required},
    {"correction.company.sno", OneOf, Optional, 0, 0, &Lists::taxationSystems},
    {"correction.company.inn", Inn, Required},
    {"correction.company.payment_address", Text, Required, 1, 256},
    {"correction.payments", Array, Required, 1, 10},
    {"correction.payments[]", Object, Required},
    {"correction.payments[].type", Integer, Required, 0, 9},
    {"correction.payments[].sum", Money, Required, 0, largestAmount},
};

} // namespace

std::span<const FieldRule> receiptRules()
{
    return receiptTable;
}

std::span<const FieldRule> correctionRules()
{
    return correctionTable;
}

} // namespace emulator
