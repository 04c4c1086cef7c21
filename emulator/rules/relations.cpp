#include "emulator/rules/relations.h"

#include "emulator/rules/formats.h"
#include "emulator/values/money.h"

#include <algorithm>
#include <cstdlib>

namespace emulator {

namespace {

constexpr std::size_t mostItems = 100;
constexpr std::int64_t largestDifference = 99; // kopecks

using Found = std::vector<Violation>;

void add(Found& found, const Relation& relation, const Checked& checked, const char* kind)
{
    found.push_back({checked.name + "." + std::string(relation.field), std::string(relation.rule), kind});
}

// Reports every item that breaks the relation.
void eachItem(
    const Relation& relation, const Checked& checked, Found& found, bool (*isBroken)(const Json& item))
{
    const Json& items = valueOf(checked.object, "items");
    const std::size_t count = items.is_array() ? std::min(items.size(), mostItems) : 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (items[i].is_object() && isBroken(items[i])) {
            add(found, relation, checked, "PropertyRequired");
            std::string& field = found.back().field;
            field.insert(field.find("[]") + 1, std::to_string(i));
        }
    }
}

void checkContact(const Relation& relation, const Checked& checked, Found& found)
{
    const Json& client = valueOf(checked.object, "client");
    if (client.is_object() && textOf(client, "email").empty() && textOf(client, "phone").empty())
        add(found, relation, checked, "PropertyRequired");
}

void checkInternet(const Relation& relation, const Checked& checked, Found& found)
{
    if (valueOf(checked.object, "internet") == true && valueOf(checked.object, "client").is_null())
        add(found, relation, checked, "PropertyRequired");
}

void checkInn(const Relation& relation, const Checked& checked, Found& found)
{
    const std::string given = textOf(objectOf(checked.object, "company"), "inn");
    if (!checked.inn.empty() && isInn(given) && given != checked.inn)
        add(found, relation, checked, "PatternMismatch");
}

void checkVat(const Relation& relation, const Checked& checked, Found& found)
{
    const auto isBroken = [](const Json& item) { return valueOf(item, "vat").is_null(); };
    if (valueOf(checked.object, "vats").empty())
        eachItem(relation, checked, found, isBroken);
}

void checkSupplier(const Relation& relation, const Checked& checked, Found& found)
{
    eachItem(relation, checked, found, [](const Json& item) {
        return !valueOf(item, "agent_info").is_null() && valueOf(item, "supplier_info").is_null();
    });
}

// The sums of `array` may differ from the total by `most` kopecks.
void checkTotal(
    const Relation& relation, const Checked& checked, Found& found, const char* array, std::int64_t most)
{
    const auto total = wholePartsOf(valueOf(checked.object, "total"), 100);
    const auto sum = sumOf(checked.object, array);
    if (total && sum && std::abs(*total - *sum) > most)
        add(found, relation, checked, *total < *sum ? "NumberTooSmall" : "NumberTooBig");
}

void checkPaid(const Relation& relation, const Checked& checked, Found& found)
{
    checkTotal(relation, checked, found, "payments", 0);
}

void checkSold(const Relation& relation, const Checked& checked, Found& found)
{
    checkTotal(relation, checked, found, "items", largestDifference);
}

using enum Scope;
using enum Source;

constexpr Relation ofReceipts[] = {
    {"client", "нужно заполнить email или phone", Always, Described, checkContact},
    {"client", "обязательное поле, если internet — true", Since2025, Described, checkInternet},
    {"company.inn", "ИНН не совпадает с ИНН группы", Letter, Described, checkInn},
    {"items[].vat", "ожидается объект", Letter, Described, checkVat},
    {"items[].supplier_info", "обязательное поле, если есть agent_info", Always, Described, checkSupplier},
    {"total", "итог не равен сумме оплат", Letter, Described, checkPaid},
    {"total", "итог отличается от суммы позиций больше чем на 99 копеек", Always, Described, checkSold},
};

constexpr Relation ofCorrections[] = {
    {"client", "обязательное поле, если internet — true", Since2025, Inferred, checkInternet},
    {"company.inn", "ИНН не совпадает с ИНН группы", Letter, Described, checkInn},
};

} // namespace

std::span<const Relation> receiptRelations()
{
    return ofReceipts;
}

std::span<const Relation> correctionRelations()
{
    return ofCorrections;
}

std::optional<std::int64_t> sumOf(const Json& object, const char* array)
{
    const Json& elements = valueOf(object, array);
    if (!elements.is_array())
        return std::nullopt;
    std::int64_t sum = 0;
    for (const Json& element : elements) {
        const auto part = wholePartsOf(valueOf(element, "sum"), 100);
        if (!part)
            return std::nullopt;
        sum += *part;
    }
    return sum;
}

std::int64_t settledKopecks(const Json& object)
{
    const auto total = wholePartsOf(valueOf(object, "total"), 100);
    return total ? *total : sumOf(object, "payments").value_or(0);
}

} // namespace emulator
