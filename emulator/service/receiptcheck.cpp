#include "emulator/service/receiptcheck.h"

#include "emulator/values/money.h"
#include "emulator/values/moscowtime.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <span>

namespace emulator {

namespace {

using Names = std::vector<std::string> Lists::*;

enum class Kind
{
    Object,
    Array,
    Text,
    Timestamp,
    Inn,
    Phone,
    Money,
    Quantity,
    Integer,
    HexBytes,
    OneOf
};
enum class Need
{
    Required,
    Optional
};

/// One row: where, what, how much of it (characters, elements, kopecks, thousandths, bytes).
struct Rule
{
    std::string_view path;
    Kind kind;
    Need need;
    std::int64_t low = 0;
    std::int64_t high = 0;
    Names names = nullptr;
};

constexpr std::int64_t mostItems = 100;
constexpr std::int64_t largestAmount = 4'294'967'295; // kopecks
constexpr std::int64_t largestQuantity = 99'999'999;  // thousandths
constexpr std::int64_t largestDifference = 99;        // kopecks between the items and the total

using enum Kind;
using enum Need;

const Rule receiptRules[] = {
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

const Rule correctionRules[] = {
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

bool allDigits(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t characters(const std::string& text)
{
    return std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
}

bool between(std::optional<std::int64_t> value, const Rule& rule)
{
    return value && *value >= rule.low && *value <= rule.high;
}

bool isInn(const std::string& text)
{
    return (text.size() == 10 || text.size() == 12) && allDigits(text);
}

bool isPhone(const std::string& text)
{
    const bool plus = text.starts_with('+');
    const std::string_view digits = std::string_view(text).substr(plus ? 1 : 0);
    return !digits.empty() && text.size() <= (plus ? 19 : 17) && allDigits(digits);
}

bool isHexBytes(const std::string& text, const Rule& rule)
{
    if (text.size() % 3 != 2)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool blank = i % 3 == 2;
        if (blank ? text[i] != ' ' : std::isxdigit(static_cast<unsigned char>(text[i])) == 0)
            return false;
    }
    return between(static_cast<std::int64_t>(text.size() + 1) / 3, rule);
}

std::optional<std::int64_t> parts(const Json& value, int scale)
{
    return value.is_number() ? wholeParts(value.get<double>(), scale) : std::nullopt;
}

bool holds(const Json& value, const Rule& rule, const Lists& lists)
{
    const auto text = [&] { return value.is_string() ? value.get<std::string>() : std::string(); };
    switch (rule.kind) {
    case Object:
        return value.is_object();
    case Array:
        return value.is_array() && between(static_cast<std::int64_t>(value.size()), rule);
    case Text:
        return value.is_string() && between(characters(text()), rule);
    case Timestamp:
        return isTimestamp(text());
    case Inn:
        return isInn(text());
    case Phone:
        return isPhone(text()) || (rule.need == Optional && value.is_string() && text().empty());
    case Money:
        return between(parts(value, 100), rule);
    case Quantity:
        return between(parts(value, 1000), rule);
    case Integer:
        return between(parts(value, 1), rule);
    case HexBytes:
        return isHexBytes(text(), rule);
    case OneOf:
        return value.is_string() && std::ranges::count(lists.*rule.names, text()) > 0;
    }
    return false;
}

std::string joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string expectation(const Rule& rule, const Lists& lists)
{
    const std::string low = std::to_string(rule.low);
    const std::string high = std::to_string(rule.high);
    switch (rule.kind) {
    case Object:
        return "нужен объект";
    case Array:
        return "нужен массив, элементов от " + low + " до " + high;
    case Text:
        return "нужна строка, символов от " + low + " до " + high;
    case Timestamp:
        return "нужны дата и время dd.mm.yyyy HH:MM:SS";
    case Inn:
        return "нужна строка из 10 или 12 цифр";
    case Phone:
        return "нужны «+» и цифры, всего до 19 символов, или до 17 цифр";
    case Money:
        return "нужно число от 0 до 42949672.95, не больше двух знаков после точки";
    case Quantity:
        return "нужно число больше 0 и до 99999.999, не больше трёх знаков после точки";
    case Integer:
        return "нужно целое число от " + low + " до " + high;
    case HexBytes:
        return "нужны байты в шестнадцатеричном виде через пробел, от " + low + " до " + high;
    case OneOf:
        return "нужно одно из значений: " + joined(lists.*rule.names);
    }
    return {};
}

class Checker
{
public:
    Checker(const Json& checkedBody, std::span<const Rule> usedRules, const Lists& usedLists)
        : body(checkedBody)
        , rules(usedRules)
        , lists(usedLists)
    {
    }

    void apply()
    {
        for (const Rule& rule : rules)
            walk(body, rule, 0, {});
    }

    void add(const std::string& field, const std::string& rule) { violations.push_back({field, rule}); }

    [[nodiscard]] std::vector<Violation> result() && { return std::move(violations); }

private:
    /// Checks every value that the rest of the rule's path, from `at` on, leads to from `value`: null for one
    /// that is missing in an object that is there, and no more elements of an array than it may have.
    void walk(const Json& value, const Rule& rule, std::size_t at, const std::string& name)
    {
        const std::string_view path = rule.path.substr(at);
        if (path.empty())
            return check(value, rule, name);
        if (path.starts_with("."))
            return walk(value, rule, at + 1, name);
        if (path.starts_with("[]")) {
            const std::size_t most = value.is_array() ? longest(rule.path.substr(0, at)) : 0;
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

    void check(const Json& value, const Rule& rule, const std::string& name)
    {
        const bool absent = value.is_null() && rule.need == Optional;
        if (!absent && !holds(value, rule, lists))
            add(name, expectation(rule, lists));
    }

    [[nodiscard]] std::size_t longest(std::string_view array) const
    {
        return static_cast<std::size_t>(std::ranges::find(rules, array, &Rule::path)->high);
    }

    const Json& body;
    std::span<const Rule> rules;
    const Lists& lists;
    std::vector<Violation> violations;
};

std::string textOf(const Json& object, const char* key)
{
    const auto found = object.is_object() ? object.find(key) : object.end();
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

/// Whether there is a value under `key`; null is none.
bool gives(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() && !found->is_null();
}

/// The object under `key`, or an empty one.
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
        checker.add(path, "ИНН не соответствует группе");
}

void checkContact(Checker& checker, const Json& receipt)
{
    const Json& client = objectOf(receipt, "client");
    const bool isThere = receipt.contains("client") && receipt["client"].is_object();
    if (isThere && textOf(client, "email").empty() && textOf(client, "phone").empty())
        checker.add("receipt.client", "нужен непустой email или phone");
}

void checkItems(Checker& checker, const Json& receipt)
{
    if (!receipt.contains("items") || !receipt["items"].is_array())
        return;
    const bool vatOfReceipt = gives(receipt, "vats") && !receipt["vats"].empty();
    const std::size_t count = std::min<std::size_t>(receipt["items"].size(), mostItems);
    for (std::size_t i = 0; i < count; ++i) {
        const Json& item = receipt["items"][i];
        const std::string name = "receipt.items[" + std::to_string(i) + "]";
        if (!item.is_object())
            continue;
        if (!vatOfReceipt && !gives(item, "vat"))
            checker.add(name + ".vat", "нужен объект");
        if (gives(item, "agent_info") && !gives(item, "supplier_info"))
            checker.add(name + ".supplier_info", "обязателен при agent_info");
    }
}

/// Nothing when there is no such array or an element has no readable sum.
std::optional<std::int64_t> sumOf(const Json& receipt, const char* key)
{
    if (!receipt.contains(key) || !receipt[key].is_array())
        return std::nullopt;
    std::int64_t sum = 0;
    for (const Json& element : receipt[key]) {
        const auto part =
            element.is_object() && element.contains("sum") ? parts(element["sum"], 100) : std::nullopt;
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
        receipt.contains("total") ? parts(receipt["total"], 100).value_or(unreadable) : unreadable;
    if (total == unreadable)
        return;
    if (total != sumOf(receipt, "payments").value_or(total))
        checker.add("receipt.total", "итог должен быть равен сумме оплат");
    if (std::abs(total - sumOf(receipt, "items").value_or(total)) > largestDifference)
        checker.add("receipt.total", "итог отличается от суммы позиций больше чем на 99 копеек");
}

} // namespace

std::vector<Violation> checkReceipt(const Json& body, const Lists& lists, const std::string& inn)
{
    Checker checker(body, receiptRules, lists);
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
    Checker checker(body, correctionRules, lists);
    checker.apply();
    checkInnOfGroup(
        checker, objectOf(objectOf(body, "correction"), "company"), "correction.company.inn", inn);
    return std::move(checker).result();
}

std::string describe(const std::vector<Violation>& violations)
{
    std::string text;
    for (const Violation& violation : violations)
        text += (text.empty() ? "" : "; ") + violation.field + ": " + violation.rule;
    return text;
}

std::int64_t paidKopecks(const Json& receipt)
{
    return sumOf(receipt, "payments").value_or(0);
}

} // namespace emulator
