#include "emulator/rules/receiptcheck.h"

#include "emulator/rules/receiptrules.h"

#include <algorithm>
#include <set>
#include <utility>

namespace emulator {

// Follows the path of a rule and checks every value that it leads to. A key missing from an object counts as
// null. Elements of an array beyond its limit are not checked.
class ReceiptCheck::Walk
{
public:
    Walk(const Field& usedField, const Lists& usedLists, std::vector<Violation>& usedFound)
        : field(usedField)
        , lists(usedLists)
        , found(usedFound)
    {
    }

    void visit(const Json& value, std::size_t depth)
    {
        if (depth == field.steps.size())
            return check(value);
        const Step& step = field.steps[depth];
        if (step.limit == 0) {
            if (value.is_object())
                visit(valueOf(value, step.key.c_str()), depth + 1);
            return;
        }
        if (!value.is_array())
            return;
        for (std::size_t i = 0; i < std::min(value.size(), step.limit); ++i) {
            indexes.push_back(i);
            visit(value[i], depth + 1);
            indexes.pop_back();
        }
    }

private:
    void check(const Json& value)
    {
        const bool absent = value.is_null() && field.rule.need == Need::Optional;
        if (!absent && !holds(value, field.rule, lists))
            found.push_back(
                {name(), expectation(field.rule, lists), std::string(violationOf(value, field.rule))});
    }

    [[nodiscard]] std::string name() const
    {
        std::string text;
        std::size_t array = 0;
        for (const Step& step : field.steps) {
            if (step.limit == 0)
                text += (text.empty() ? "" : ".") + step.key;
            else
                text += "[" + std::to_string(indexes[array++]) + "]";
        }
        return text;
    }

    const Field& field;
    const Lists& lists;
    std::vector<Violation>& found;
    std::vector<std::size_t> indexes{};
};

ReceiptCheck::ReceiptCheck(const Edition& edition, Lists usedLists)
    : lists(std::move(usedLists))
    , receipts(rulesOf("receipt", receiptRules(), receiptRelations(), edition))
    , corrections(rulesOf("correction", correctionRules(), correctionRelations(), edition))
{
}

ReceiptCheck::Rules ReceiptCheck::rulesOf(const char* object, std::span<const FieldRule> fields,
    std::span<const Relation> relations, const Edition& edition)
{
    Rules rules{.object = object, .fields = {}, .relations = {}};
    for (const FieldRule& rule : fields) {
        if (covers(rule.scope, edition))
            rules.fields.push_back({rule, stepsOf(rule, rules.fields)});
    }
    for (const Relation& relation : relations) {
        if (covers(relation.scope, edition))
            rules.relations.push_back(relation);
    }
    return rules;
}

// The limit of an array is that of its own rule, which comes before those of its elements.
std::vector<ReceiptCheck::Step> ReceiptCheck::stepsOf(const FieldRule& rule, const std::vector<Field>& before)
{
    std::vector<Step> steps;
    const std::string_view path = rule.path;
    for (std::size_t at = 0; at < path.size();) {
        if (path.substr(at).starts_with("[]")) {
            const auto pathOf = [](const Field& field) { return field.rule.path; };
            const auto array = std::ranges::find(before, path.substr(0, at), pathOf);
            steps.push_back({.limit = static_cast<std::size_t>(array->rule.high)});
            at += 2;
        } else {
            at += path[at] == '.' ? 1U : 0U;
            const std::size_t end = std::min(path.find_first_of(".[", at), path.size());
            steps.push_back({.key = std::string(path.substr(at, end - at))});
            at = end;
        }
    }
    return steps;
}

std::vector<Violation> ReceiptCheck::violations(
    const Rules& rules, const Json& body, const std::string& inn) const
{
    std::vector<Violation> found;
    for (const Field& field : rules.fields)
        Walk(field, lists, found).visit(body, 0);
    const Checked checked{.name = rules.object, .object = objectOf(body, rules.object.c_str()), .inn = inn};
    for (const Relation& relation : rules.relations)
        relation.check(relation, checked, found);
    return found;
}

Json ReceiptCheck::list() const
{
    Json all;
    for (const Rules* rules : {&receipts, &corrections}) {
        Json& listed = all[rules->object] = Json::array();
        for (const auto& [rule, steps] : rules->fields)
            listed.push_back({{"field", rule.path}, {"required", rule.need == Need::Required},
                {"rule", expectation(rule, lists)}, {"source", letterOf(rule.source)}});
        for (const Relation& relation : rules->relations)
            listed.push_back({{"field", rules->object + "." + std::string(relation.field)},
                {"rule", relation.rule}, {"source", letterOf(relation.source)}});
    }
    return all;
}

std::vector<Violation> ReceiptCheck::violationsOfReceipt(const Json& body, const std::string& inn) const
{
    return violations(receipts, body, inn);
}

std::vector<Violation> ReceiptCheck::violationsOfCorrection(const Json& body, const std::string& inn) const
{
    return violations(corrections, body, inn);
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

} // namespace emulator
