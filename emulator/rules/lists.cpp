#include "emulator/rules/lists.h"

#include <algorithm>
#include <array>

namespace emulator {

namespace {

constexpr int always = 0;
constexpr int forGood = 999999;

// A name and the months, as in Revision, in which it is accepted.
struct Name
{
    std::string_view name;
    Source source;
    int from = always;
    int until = forGood;
};

using enum Source;

constexpr Name operations[] = {{"sell", Described}, {"sell_refund", Described},
    {"sell_correction", Described}, {"buy", Described}, {"buy_refund", Described},
    {"buy_correction", Described}};

constexpr Name taxationSystems[] = {{"osn", Described}, {"usn_income", Described},
    {"usn_income_outcome", Described}, {"envd", Described}, {"esn", Described}, {"patent", Described}};

constexpr Name vatTypes[] = {
    {"none", Described},
    {"vat0", Described},
    {"vat5", Described, 202412},
    {"vat7", Described, 202412},
    {"vat10", Described},
    {"vat18", Described, always, 201812},
    {"vat20", Described},
    {"vat22", Described, 202511},
    {"vat105", Described, 202412},
    {"vat107", Described, 202412},
    {"vat110", Described},
    {"vat118", Described, always, 201812},
    {"vat120", Described},
    {"vat122", Described, 202511},
};

constexpr Name agentTypes[] = {{"bank_paying_agent", Described}, {"bank_paying_subagent", Described},
    {"paying_agent", Described}, {"paying_subagent", Described}, {"attorney", Described},
    {"commission_agent", Described}, {"another", Described}};

constexpr Name paymentMethods[] = {{"full_prepayment", Described}, {"prepayment", Described},
    {"advance", Described}, {"full_payment", Described}, {"partial_payment", Described},
    {"credit", Described}, {"credit_payment", Described}};

// The month of the later ones is not known, only that they came after the older revision. Those marked as
// inferred are named after the kinds of the fiscal data format.
constexpr Name paymentObjects[] = {
    {"commodity", Described},
    {"excise", Described},
    {"job", Described},
    {"service", Described},
    {"gambling_bet", Described},
    {"gambling_prize", Described},
    {"lottery", Described},
    {"lottery_prize", Described},
    {"intellectual_activity", Described},
    {"payment", Described},
    {"agent_commission", Described},
    {"award", Described, 202512},
    {"composite", Described},
    {"another", Described},
    {"property_right", Described, 202512},
    {"non-operating_gain", Inferred, 202512},
    {"insurance_premium", Inferred, 202512},
    {"sales_tax", Inferred, 202512},
    {"resort_fee", Described, 202512},
    {"deposit", Described, 202512},
    {"expense", Inferred, 202512},
    {"pension_insurance_ip", Inferred, 202512},
    {"pension_insurance", Inferred, 202512},
    {"medical_insurance_ip", Inferred, 202512},
    {"medical_insurance", Inferred, 202512},
    {"social_insurance", Inferred, 202512},
    {"casino_payment", Inferred, 202512},
};

struct Rate
{
    std::string_view name;
    int percent;
};

constexpr Rate rates[] = {{"none", 0}, {"vat0", 0}, {"vat5", 5}, {"vat7", 7}, {"vat10", 10}, {"vat18", 18},
    {"vat20", 20}, {"vat22", 22}, {"vat105", 5}, {"vat107", 7}, {"vat110", 10}, {"vat118", 18},
    {"vat120", 20}, {"vat122", 22}};

std::vector<std::string> namesIn(const auto& table, Revision revision)
{
    std::vector<std::string> names;
    for (const Name& row : table) {
        if (row.from <= static_cast<int>(revision) && static_cast<int>(revision) <= row.until)
            names.emplace_back(row.name);
    }
    return names;
}

} // namespace

Lists listsOf(Revision revision)
{
    return {.operations = namesIn(operations, revision),
        .taxationSystems = namesIn(taxationSystems, revision),
        .vatTypes = namesIn(vatTypes, revision),
        .agentTypes = namesIn(agentTypes, revision),
        .paymentMethods = namesIn(paymentMethods, revision),
        .paymentObjects = namesIn(paymentObjects, revision)};
}

std::optional<int> vatRate(std::string_view vatType)
{
    const auto* found = std::ranges::find(rates, vatType, &Rate::name);
    return found == std::end(rates) ? std::nullopt : std::optional(found->percent);
}

} // namespace emulator
