#include "emulator/rules/receiptrules.h"

namespace emulator {

namespace {

// In kopecks, and in parts of a whole.
constexpr std::int64_t amount2023 = 4'294'967'295;
constexpr std::int64_t amount2025 = 1'000'000'000'000;
constexpr std::int64_t quantity2023 = 99'999'999;
constexpr std::int64_t quantity2025 = 99'999'999'000;

using enum FieldKind;
using enum Need;
using enum Scope;
using enum Source;

// clang-format off
const FieldRule receiptTable[] = {
    {"timestamp", Timestamp, Required, Letter, Described},
    {"timestamp", TimestampOrIso, Required, Practice, Recorded},
    {"external_id", Text, Required, Always, Described, 1, 128},
    {"receipt", Object, Required, Always, Described},
    {"receipt.client", Object, Required, Letter, Described},
    {"receipt.client", Object, Optional, Practice, Inferred},
    {"receipt.client.email", Text, Optional, Always, Described, 0, 64},
    {"receipt.client.phone", Phone, Optional, Until2023, Described},
    {"receipt.client.phone", Text, Optional, Since2025, Described, 0, 64},
    {"receipt.client.inn", Inn, Optional, Since2025, Described},
    {"receipt.company", Object, Required, Always, Described},
    {"receipt.company.email", Text, Required, Letter, Described, 1, 64},
    {"receipt.company.email", Text, Optional, Practice, Told, 1, 64},
    {"receipt.company.sno", OneOf, Optional, Always, Described, 0, 0, &Lists::taxationSystems},
    {"receipt.company.inn", Inn, Required, Always, Described},
    {"receipt.company.payment_address", Text, Required, Always, Described, 1, 256},
    {"receipt.internet", Boolean, Optional, Since2025, Described},
    {"receipt.cashier", Text, Optional, Since2025, Described, 0, 64},
    {"receipt.items", Array, Required, Always, Described, 1, 100},
    {"receipt.items[]", Object, Required, Always, Described},
    {"receipt.items[].name", Text, Required, Always, Described, 1, 128},
    {"receipt.items[].price", Money, Required, Until2023, Described, 0, amount2023},
    {"receipt.items[].price", Money, Required, Since2025, Described, 0, amount2025},
    {"receipt.items[].quantity", Thousandths, Required, Until2023, Described, 1, quantity2023},
    {"receipt.items[].quantity", Millionths, Required, Since2025, Described, 1, quantity2025},
    {"receipt.items[].sum", Money, Required, Until2023, Described, 0, amount2023},
    {"receipt.items[].sum", Money, Required, Since2025, Described, 0, amount2025},
    {"receipt.items[].measurement_unit", Text, Optional, Since2025, Described, 0, 16},
    {"receipt.items[].payment_method", OneOf, Optional, Always, Described, 0, 0, &Lists::paymentMethods},
    {"receipt.items[].payment_object", OneOf, Optional, Always, Described, 0, 0, &Lists::paymentObjects},
    {"receipt.items[].nomenclature_code", HexBytes, Optional, Until2023, Described, 1, 32},
    {"receipt.items[].nomenclature_code", MarkingCode, Optional, Since2025, Described, 1, 32},
    {"receipt.items[].vat", Object, Optional, Always, Described},
    {"receipt.items[].vat.type", OneOf, Required, Always, Described, 0, 0, &Lists::vatTypes},
    {"receipt.items[].agent_info", Object, Optional, Always, Described},
    {"receipt.items[].agent_info.type", OneOf, Required, Always, Described, 0, 0, &Lists::agentTypes},
    {"receipt.items[].agent_info.paying_agent", Object, Optional, Since2025, Inferred},
    {"receipt.items[].agent_info.paying_agent.phones", Array, Optional, Since2025, Inferred, 0, 100},
    {"receipt.items[].agent_info.paying_agent.phones[]", AgentPhone, Required, Since2025, Described},
    {"receipt.items[].agent_info.receive_payments_operator", Object, Optional, Since2025, Inferred},
    {"receipt.items[].agent_info.receive_payments_operator.phones", Array, Optional, Since2025, Inferred, 0, 100},
    {"receipt.items[].agent_info.receive_payments_operator.phones[]", AgentPhone, Required, Since2025, Described},
    {"receipt.items[].agent_info.money_transfer_operator", Object, Optional, Since2025, Inferred},
    {"receipt.items[].agent_info.money_transfer_operator.phones", Array, Optional, Since2025, Inferred, 0, 100},
    {"receipt.items[].agent_info.money_transfer_operator.phones[]", AgentPhone, Required, Since2025, Described},
    {"receipt.items[].supplier_info", Object, Optional, Always, Described},
    {"receipt.items[].supplier_info.phones", Array, Optional, Always, Described, 0, 100},
    {"receipt.items[].supplier_info.phones[]", Phone, Required, Until2023, Described},
    {"receipt.items[].supplier_info.phones[]", AgentPhone, Required, Since2025, Inferred},
    {"receipt.vats", Array, Optional, Until2023, Described, 0, 100},
    {"receipt.vats", Array, Optional, Since2025, Described, 0, 6},
    {"receipt.vats[]", Object, Required, Always, Described},
    {"receipt.vats[].type", OneOf, Required, Always, Described, 0, 0, &Lists::vatTypes},
    {"receipt.vats[].sum", Money, Optional, Until2023, Described, 0, amount2023},
    {"receipt.vats[].sum", Money, Optional, Since2025, Described, 0, amount2025},
    {"receipt.payments", Array, Required, Always, Described, 1, 10},
    {"receipt.payments[]", Object, Required, Always, Described},
    {"receipt.payments[].type", Integer, Required, Always, Described, 0, 9},
    {"receipt.payments[].sum", Money, Required, Until2023, Described, 0, amount2023},
    {"receipt.payments[].sum", Money, Required, Since2025, Described, 0, amount2025},
    {"receipt.total", Money, Required, Until2023, Described, 0, amount2023},
    {"receipt.total", Money, Required, Since2025, Described, 0, amount2025},
};

const FieldRule correctionTable[] = {
    {"timestamp", Timestamp, Required, Letter, Described},
    {"timestamp", TimestampOrIso, Required, Practice, Recorded},
    {"external_id", Text, Required, Always, Described, 1, 128},
    {"correction", Object, Required, Always, Described},
    {"correction.company", Object, Required, Always, Described},
    {"correction.company.sno", OneOf, Optional, Always, Described, 0, 0, &Lists::taxationSystems},
    {"correction.company.inn", Inn, Required, Always, Described},
    {"correction.company.payment_address", Text, Required, Always, Described, 1, 256},
    {"correction.correction_info", Object, Required, Since2025, Described},
    {"correction.cashier", Text, Optional, Since2025, Described, 0, 64},
    {"correction.vats", Array, Required, Since2025, Described, 1, 6},
    {"correction.vats[]", Object, Required, Since2025, Described},
    {"correction.vats[].type", OneOf, Required, Since2025, Described, 0, 0, &Lists::vatTypes},
    {"correction.vats[].sum", Money, Optional, Since2025, Described, 0, amount2025},
    {"correction.payments", Array, Required, Always, Described, 1, 10},
    {"correction.payments[]", Object, Required, Always, Described},
    {"correction.payments[].type", Integer, Required, Always, Described, 0, 9},
    {"correction.payments[].sum", Money, Required, Until2023, Described, 0, amount2023},
    {"correction.payments[].sum", Money, Required, Since2025, Described, 0, amount2025},
};
// clang-format on

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
