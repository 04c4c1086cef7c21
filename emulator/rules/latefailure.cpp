#include "emulator/rules/latefailure.h"

#include "emulator/rules/lists.h"
#include "emulator/values/money.h"

#include <cstdlib>

namespace emulator {

namespace {

struct LateRule
{
    /// Below the receipt or correction.
    std::string_view field;
    std::string_view rule;
    Scope scope;
    Source source;
    std::vector<Violation> (*check)(const LateRule& rule, const Checked& checked);
    int code;
    std::string_view type;
    std::string_view text;
};

std::vector<Violation> checkTaxpayer(const LateRule& rule, const Checked& checked)
{
    if (checked.inn.empty() || textOf(objectOf(checked.object, "company"), "inn") == checked.inn)
        return {};
    return {{checked.name + "." + std::string(rule.field), std::string(rule.rule), {}}};
}

// The sum of VAT that the item should have, if it has a wrong one. How the service rounds is not known, so a
// kopeck does not count.
std::optional<std::int64_t> missedVatSum(const Json& item)
{
    const Json& vat = objectOf(item, "vat");
    const Json& given = valueOf(vat, "sum");
    const auto sum = wholePartsOf(valueOf(item, "sum"), 100);
    if (given.is_null() || !sum)
        return std::nullopt;
    const auto expected = vatIn(textOf(vat, "type"), *sum);
    const auto kopecks = wholePartsOf(given, 100);
    const bool good = !expected || (kopecks && std::abs(*kopecks - *expected) <= 1);
    return good ? std::nullopt : expected;
}

std::vector<Violation> checkVatSums(const LateRule& rule, const Checked& checked)
{
    const Json& items = valueOf(checked.object, "items");
    std::vector<Violation> found;
    for (std::size_t i = 0; items.is_array() && i < items.size(); ++i) {
        if (const auto expected = missedVatSum(items[i]))
            found.push_back({checked.name + ".items[" + std::to_string(i) + "].vat.sum",
                std::string(rule.rule) + ": " + Json(roubles(*expected)).dump(), {}});
    }
    return found;
}

// The text of the first and the code of the second are not known.
constexpr LateRule table[] = {
    {"company.inn", "ИНН не совпадает с ИНН группы", Scope::Practice, Source::Recorded, checkTaxpayer, 2009,
        "agent", "ИНН организации не совпадает с ИНН группы"},
    {"items[].vat.sum", "ожидается сумма НДС по ставке", Scope::Since2025, Source::Recorded, checkVatSums,
        502, "driver", "Некорректная сумма налога"},
};

} // namespace

std::optional<LateFailure> lateFailureOf(const Checked& checked, const Edition& edition)
{
    for (const LateRule& rule : table) {
        if (!covers(rule.scope, edition))
            continue;
        if (auto fields = rule.check(rule, checked); !fields.empty())
            return LateFailure{rule.code, rule.type, rule.text, std::move(fields)};
    }
    return std::nullopt;
}

Json lateRules(const Edition& edition)
{
    Json all = Json::array();
    for (const LateRule& rule : table) {
        if (covers(rule.scope, edition))
            all.push_back({{"field", rule.field}, {"rule", rule.rule}, {"source", letterOf(rule.source)},
                {"code", rule.code}, {"type", rule.type}});
    }
    return all;
}

} // namespace emulator
