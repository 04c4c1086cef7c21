#pragma once

#include "emulator/rules/fieldrule.h"
#include "emulator/rules/relations.h"

#include <span>
#include <string>
#include <vector>

namespace emulator {

/// Checks the bodies of register calls by the rules of one edition.
class ReceiptCheck
{
public:
    ReceiptCheck(const Edition& edition, Lists usedLists);

    /// All violations, in the order of the rules. `inn` is the group's taxpayer number; if empty, any is
    /// accepted.
    [[nodiscard]] std::vector<Violation> violationsOfReceipt(const Json& body, const std::string& inn) const;
    [[nodiscard]] std::vector<Violation> violationsOfCorrection(
        const Json& body, const std::string& inn) const;

    /// The rules in force: objects with `field`, `rule`, `source` and, unless they are about several fields,
    /// `required`.
    [[nodiscard]] Json list() const;

private:
    /// A key of an object or, with a limit, every element of an array up to it.
    struct Step
    {
        std::string key{};
        std::size_t limit = 0;
    };
    /// A rule with its path taken apart.
    struct Field
    {
        FieldRule rule;
        std::vector<Step> steps;
    };
    /// The rules for one kind of body.
    struct Rules
    {
        std::string object;
        std::vector<Field> fields;
        std::vector<Relation> relations;
    };
    class Walk;

    static Rules rulesOf(const char* object, std::span<const FieldRule> fields,
        std::span<const Relation> relations, const Edition& edition);
    static std::vector<Step> stepsOf(const FieldRule& rule, const std::vector<Field>& before);
    [[nodiscard]] std::vector<Violation> violations(
        const Rules& rules, const Json& body, const std::string& inn) const;

    Lists lists;
    Rules receipts;
    Rules corrections;
};

/// `kind: #/field, kind: #/field`, as the service names wrong fields. Names the same one once.
[[nodiscard]] std::string describe(const std::vector<Violation>& violations);

} // namespace emulator
