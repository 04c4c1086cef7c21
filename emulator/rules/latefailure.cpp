#include "emulator/rules/latefailure.h"

#include "emulator/rules/lists.h"
#include "emulator/values/money.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace emulator {

namespace {

bool hasOtherInn(const Json& object, const std::string& inn)
{
    return !inn.empty() && textOf(objectOf(object, "company"), "inn") != inn;
}

// How the service rounds is not known, so a kopeck does not count.
bool hasWrongVatSum(const Json& item)
{
    const Json& vat = objectOf(item, "vat");
    const Json& given = valueOf(vat, "sum");
    if (given.is_null())
        return false;
    const auto rate = vatRate(textOf(vat, "type"));
    const auto sum = wholePartsOf(valueOf(item, "sum"), 100);
    if (!rate || !sum)
        return false;
    const auto kopecks = wholePartsOf(given, 100);
    const auto expected = std::llround(static_cast<double>(*sum) * *rate / (100 + *rate));
    return !kopecks || std::abs(*kopecks - expected) > 1;
}

bool hasWrongVatSums(const Json& object, const std::string&)
{
    const Json& items = valueOf(object, "items");
    return items.is_array() && std::ranges::any_of(items, hasWrongVatSum);
}

struct LateRule
{
    Scope scope;
    Source source;
    bool (*applies)(const Json& object, const std::string& inn);
    LateFailure failure;
};

// The text of the first and the code of the second are not known.
constexpr LateRule lateRules[] = {
    {Scope::Practice, Source::Recorded, hasOtherInn,
        {2009, "agent", "ИНН организации не совпадает с ИНН группы"}},
    {Scope::Since2025, Source::Recorded, hasWrongVatSums, {502, "driver", "Некорректная сумма налога"}},
};

} // namespace

std::optional<LateFailure> lateFailureOf(const Json& object, const std::string& inn, const Edition& edition)
{
    for (const LateRule& rule : lateRules) {
        if (covers(rule.scope, edition) && rule.applies(object, inn))
            return rule.failure;
    }
    return std::nullopt;
}

} // namespace emulator
