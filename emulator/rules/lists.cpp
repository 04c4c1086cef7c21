#include "emulator/rules/lists.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace emulator {

namespace {

constexpr int always = 0;

// A name and the month, as in Revision, since which it is accepted.
struct Name
{
    std::string_view name;
    Source source;
    int from = always;
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
    {"vat20", Described},
    {"vat22", Described, 202511},
    {"vat105", Described, 202412},
    {"vat107", Described, 202412},
    {"vat110", Described},
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

struct NameList
{
    const char* key;
    std::vector<std::string> Lists::*names;
    std::span<const Name> known;
};

constexpr NameList nameLists[] = {
    {"operations", &Lists::operations, operations},
    {"taxationSystems", &Lists::taxationSystems, taxationSystems},
    {"vatTypes", &Lists::vatTypes, vatTypes},
    {"agentTypes", &Lists::agentTypes, agentTypes},
    {"paymentMethods", &Lists::paymentMethods, paymentMethods},
    {"paymentObjects", &Lists::paymentObjects, paymentObjects},
};

} // namespace

Lists listsOf(Revision revision)
{
    Lists lists;
    for (const NameList& list : nameLists) {
        for (const Name& row : list.known) {
            if (row.from <= static_cast<int>(revision))
                (lists.*list.names).emplace_back(row.name);
        }
    }
    return lists;
}

Json listed(const Lists& lists)
{
    Json all;
    for (const NameList& list : nameLists) {
        Json& names = all[list.key] = Json::array();
        for (const std::string& name : lists.*list.names) {
            const auto found = std::ranges::find(list.known, name, &Name::name);
            const bool known = found != list.known.end();
            names.push_back({{"name", name}, {"source", known ? Json(letterOf(found->source)) : Json()}});
        }
    }
    return all;
}

std::optional<std::int64_t> vatIn(std::string_view vatType, std::int64_t kopecks)
{
    const auto* found = std::ranges::find(rates, vatType, &Rate::name);
    if (found == std::end(rates))
        return std::nullopt;
    return std::llround(static_cast<double>(kopecks) * found->percent / (100 + found->percent));
}

} // namespace emulator
