#include "emulator/rules/receiptcheck.h"

#include "emulator/rules/receiptrules.h"
#include "emulator/values/money.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <span>
#include <string_view>

namespace emulator {

namespace {

constexpr std::int64_t largestDifference = 99; // kopecks

class Checker
{
public:
    Checker(const Json& checkedBody, std::span<const FieldRule> usedRules, const Lists& usedLists)
        : body(checkedBody)
        , rules(usedRules)
        , lists(usedLists)
    {
    }

    void apply()
    {
        for (const FieldRule& rule : rules)
            walk(body, rule, 0, {});
    }

    void add(const std::string& field, const std::string& rule, std::string_view kind)
    {
        violations.push_back({field, rule, std::string(kind)});
    }

    [[nodiscard]] std::vector<Violation> result() && { return std::move(violations); }

private:
    // Follows the rule's path from `at` on, starting at `value`, and checks every value it leads to. A key
    // missing from an object counts as null. Elements of an array beyond its limit are not checked.
    void walk(const Json& value, const FieldRule& rule, std::size_t at, const std::string& name)
    {
        const std::string_view path = rule.path.substr(at);
        if (path.empty())
            return check(value, rule, name);
        if (path.starts_with("."))
            return walk(value, rule, at + 1, name);
        if (path.starts_with("[]")) {
            const std::size_t most = value.is_array() ? limitOf(rule.path.substr(0, at)) : 0;
            for (std::size_t i = 0; i < std::min(value.size(), most); ++i)
                walk(value[i], rule, at + 2, name + "[" + std::to_string(i) + "]");
            return;
        }
        if (!value.is_object())
            return;
        static const Json missing;
        const std::string key(path.substr(0, path.find_first_of(".[")));
        const auto found = value.find(key);
        walk(found == value.end() ? missing : *found, rule, at + key.size(),
            name.empty() ? key : name + "." + key);
    }

    void check(const Json& value, const FieldRule& rule, const std::string& name)
    {
        const bool absent = value.is_null() && rule.need == Need::Optional;
        if (!absent && !holds(value, rule, lists))
            add(name, expectation(rule, lists), violationOf(value, rule));
    }

    [[nodiscard]] std::size_t limitOf(std::string_view array) const
    {
        return static_cast<std::size_t>(std::ranges::find(rules, array, &FieldRule::path)->high);
    }

    const Json& body;
    std::span<const FieldRule> rules;
    const Lists& lists;
    std::vector<Violation> violations;
};

std::string textOf(const Json& object, const char* key)
{
    const auto found = object.is_object() ? object.find(key) : object.end();
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool hasValue(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() && !found->is_null();
}

const Json& objectOf(const Json& parent, const char* key)
{
    static const Json none = Json::object();
    const auto found = parent.is_object() ? parent.find(key) : parent.end();
    return found != parent.end() && found->is_object() ? *found : none;
}

void checkInnOfGroup(Checker& checker, const Json& company, const std::string& path, const std::string& inn)
{
    const std::string given = textOf(company, "inn");
    if (!inn.empty() && isInn(given) && given != inn)
        checker.add(path, "ИНН не совпадает с ИНН группы", "PatternMismatch");
}

void checkContact(Checker& checker, const Json& receipt)
{
    const Json& client = objectOf(receipt, "client");
    const bool hasClient = receipt.contains("client") && receipt["client"].is_object();
    if (hasClient && textOf(client, "email").empty() && textOf(client, "phone").empty())
        checker.add("receipt.client", "нужно заполнить email или phone", "PropertyRequired");
}

void checkItems(Checker& checker, const Json& receipt)
{
    if (!receipt.contains("items") || !receipt["items"].is_array())
        return;
    const bool receiptHasVats = hasValue(receipt, "vats") && !receipt["vats"].empty();
    const std::size_t count = std::min<std::size_t>(receipt["items"].size(), mostItems);
    for (std::size_t i = 0; i < count; ++i) {
        const Json& item = receipt["items"][i];
        const std::string name = "receipt.items[" + std::to_string(i) + "]";
        if (!item.is_object())
            continue;
        if (!receiptHasVats && !hasValue(item, "vat"))
            checker.add(name + ".vat", "ожидается объект", "PropertyRequired");
        if (hasValue(item, "agent_info") && !hasValue(item, "supplier_info"))
            checker.add(
                name + ".supplier_info", "обязательное поле, если есть agent_info", "PropertyRequired");
    }
}

// Nothing if there is no such array or one of its elements has no valid sum.
std::optional<std::int64_t> sumOf(const Json& receipt, const char* key)
{
    if (!receipt.contains(key) || !receipt[key].is_array())
        return std::nullopt;
    std::int64_t sum = 0;
    for (const Json& element : receipt[key]) {
        const auto part =
            element.is_object() && element.contains("sum") ? wholePartsOf(element["sum"], 100) : std::nullopt;
        if (!part)
            return std::nullopt;
        sum += *part;
    }
    return sum;
}

void checkTotals(Checker& checker, const Json& receipt)
{
    const std::int64_t unreadable = -1;
    const std::int64_t total =
        receipt.contains("total") ? wholePartsOf(receipt["total"], 100).value_or(unreadable) : unreadable;
    if (total == unreadable)
        return;
    const auto kind = [total](std::int64_t sum) { return total < sum ? "NumberTooSmall" : "NumberTooBig"; };
    const std::int64_t paid = sumOf(receipt, "payments").value_or(total);
    if (total != paid)
        checker.add("receipt.total", "итог не равен сумме оплат", kind(paid));
    const std::int64_t sold = sumOf(receipt, "items").value_or(total);
    if (std::abs(total - sold) > largestDifference)
        checker.add("receipt.total", "итог отличается от суммы позиций больше чем на 99 копеек", kind(sold));
}

} // namespace

std::vector<Violation> checkReceipt(const Json& body, const Lists& lists, const std::string& inn)
{
    Checker checker(body, receiptRules(), lists);
    checker.apply();
    const Json& receipt = objectOf(body, "receipt");
    checkContact(checker, receipt);
    checkInnOfGroup(checker, objectOf(receipt, "company"), "receipt.company.inn", inn);
    checkItems(checker, receipt);
    checkTotals(checker, receipt);
    return std::move(checker).result();
}

std::vector<Violation> checkCorrection(const Json& body, const Lists& lists, const std::string& inn)
{
    Checker checker(body, correctionRules(), lists);
    checker.apply();
    checkInnOfGroup(
        checker, objectOf(objectOf(body, "correction"), "company"), "correction.company.inn", inn);
    return std::move(checker).result();
}

std::string describe(const std::vector<Violation>& violations)
{
    std::string text;
    std::set<std::string> named;
    for (const Violation& violation : violations) {
        const std::string one = violation.kind + ": #/" + violation.field;
        if (named.insert(one).second)
            text += (text.empty() ? "" : ", ") + one;
    }
    return text;
}

std::int64_t paidKopecks(const Json& receipt)
{
    return sumOf(receipt, "payments").value_or(0);
}

} // namespace emulator
