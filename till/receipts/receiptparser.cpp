#include "till/receipts/receiptparser.h"

#include "till/language.h"
#include "till/nearestname.h"
#include "till/receipts/jsonreader.h"
#include "till/receipts/schemarules.h"
#include "till/text.h"

#include <QFile>
#include <QJsonArray>
#include <QStringList>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/pointer.h>
#include <rapidjson/reader.h>
#include <valijson/adapters/rapidjson_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include <algorithm>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

using rapidjson::Value;

// What the parser of JSON says, for the translation alone.
[[maybe_unused]] constexpr const char* parserTexts[] = {
    QT_TRANSLATE_NOOP("Text", "The document is empty."),
    QT_TRANSLATE_NOOP("Text", "The document root must not be followed by other values."),
    QT_TRANSLATE_NOOP("Text", "Invalid value."),
    QT_TRANSLATE_NOOP("Text", "Missing a name for object member."),
    QT_TRANSLATE_NOOP("Text", "Missing a colon after a name of object member."),
    QT_TRANSLATE_NOOP("Text", "Missing a comma or '}' after an object member."),
    QT_TRANSLATE_NOOP("Text", "Missing a comma or ']' after an array element."),
    QT_TRANSLATE_NOOP("Text", "Incorrect hex digit after \\u escape in string."),
    QT_TRANSLATE_NOOP("Text", "The surrogate pair in string is invalid."),
    QT_TRANSLATE_NOOP("Text", "Invalid escape character in string."),
    QT_TRANSLATE_NOOP("Text", "Missing a closing quotation mark in string."),
    QT_TRANSLATE_NOOP("Text", "Invalid encoding in string."),
    QT_TRANSLATE_NOOP("Text", "Number too big to be stored in double."),
    QT_TRANSLATE_NOOP("Text", "Miss fraction part in number."),
    QT_TRANSLATE_NOOP("Text", "Miss exponent in number."),
};

// Far more than a receipt needs; keeps the recursive walks below harmless.
constexpr int maxDepth = 32;

QString text(const Value& value)
{
    return QString::fromUtf8(value.GetString(), static_cast<qsizetype>(value.GetStringLength()));
}

QString member(const QString& pointer, QString name)
{
    name.replace(u'~', u"~0"_s).replace(u'/', u"~1"_s);
    return pointer + u'/' + name;
}

QJsonValue converted(const Value& value)
{
    if (value.IsString())
        return text(value);
    if (value.IsBool())
        return value.GetBool();
    if (value.IsInt64())
        return QJsonValue(static_cast<qint64>(value.GetInt64()));
    if (value.IsNumber())
        return value.GetDouble();
    if (value.IsArray()) {
        QJsonArray array;
        for (const Value& element : value.GetArray())
            array.append(converted(element));
        return array;
    }
    if (value.IsObject()) {
        QJsonObject object;
        for (const auto& entry : value.GetObject())
            object.insert(text(entry.name), converted(entry.value));
        return object;
    }
    return {};
}

std::optional<ReceiptProblem> structureProblem(const Value& value, const QString& pointer, int depth)
{
    if (depth > maxDepth)
        return ReceiptProblem{0, {}, Text::tr("the receipt is nested too deeply")};
    if (value.IsArray()) {
        for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
            if (auto problem = structureProblem(value[i], member(pointer, QString::number(i)), depth + 1))
                return problem;
        }
    }
    if (value.IsObject()) {
        std::set<std::string_view> names;
        for (const auto& entry : value.GetObject()) {
            const QString inner = member(pointer, text(entry.name));
            if (!names.emplace(entry.name.GetString(), entry.name.GetStringLength()).second)
                return ReceiptProblem{0, inner, Text::tr("the key occurs twice in one object")};
            if (auto problem = structureProblem(entry.value, inner, depth + 1))
                return problem;
        }
    }
    return std::nullopt;
}

int lineBreaksBefore(const QByteArray& source, std::size_t offset)
{
    const auto end = source.begin() + std::min(static_cast<qsizetype>(offset), source.size());
    return static_cast<int>(std::count(source.begin(), end, '\n'));
}

// Reads the text again to learn where the last value at a pointer is.
class Locator : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Locator>
{
public:
    Locator(const QByteArray& source, const QString& pointer)
        : stream(source.constData(), static_cast<std::size_t>(source.size()))
        , wanted(pointer)
    {
        rapidjson::Reader reader;
        reader.Parse<jsonParseFlags>(stream, *this);
    }

    [[nodiscard]] std::size_t offset() const { return found; }

    bool Default() { return value(); }
    bool Key(const char* name, rapidjson::SizeType length, bool)
    {
        path.back() = QString::fromUtf8(name, static_cast<qsizetype>(length));
        return true;
    }
    bool StartObject() { return open(QString()); }
    bool StartArray() { return open(u"0"_s); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

private:
    bool open(const QString& firstStep)
    {
        note();
        path << firstStep;
        isArray.push_back(!firstStep.isEmpty());
        return true;
    }
    bool close()
    {
        path.removeLast();
        isArray.pop_back();
        next();
        return true;
    }
    bool value()
    {
        note();
        next();
        return true;
    }
    void next()
    {
        if (!isArray.empty() && isArray.back())
            path.back() = QString::number(path.back().toInt() + 1);
    }
    void note()
    {
        if (path.size() != wanted.count(u'/'))
            return;
        QString pointer;
        for (const QString& step : path)
            pointer = member(pointer, step);
        if (pointer == wanted)
            found = stream.Tell();
    }

    rapidjson::MemoryStream stream;
    QString wanted;
    QStringList path;
    std::vector<bool> isArray;
    std::size_t found = 0;
};

// What a message calls the value at a pointer.
QString nameOf(const QString& pointer)
{
    const QString last = pointer.section(u'/', -1);
    bool isNumber = false;
    last.toInt(&isNumber);
    return pointer.isEmpty() ? Text::tr("the receipt") : isNumber ? Text::tr("this") : last;
}

} // namespace

ReceiptProblem located(const QByteArray& source, ReceiptProblem problem)
{
    problem.lineOffset = lineBreaksBefore(source, Locator(source, problem.pointer).offset());
    return problem;
}

class ReceiptParser::Schema
{
public:
    Schema()
    {
        QFile file(u":/till/receipt.schema.json"_s);
        if (!file.open(QIODevice::ReadOnly))
            throw std::logic_error("the receipt schema is not embedded");
        const QByteArray content = file.readAll();
        document.Parse(content.constData(), static_cast<std::size_t>(content.size()));
        valijson::SchemaParser parser;
        parser.populateSchema(valijson::adapters::RapidJsonAdapter(document), rules);
    }

    [[nodiscard]] std::optional<ReceiptProblem> problem(const Value& receipt) const
    {
        valijson::Validator validator;
        valijson::ValidationResults results;
        const valijson::adapters::RapidJsonAdapter target(receipt);
        if (validator.validate(rules, target, &results))
            return std::nullopt;
        // The library reports a fault and then all that contains it; the deepest is the cause.
        const auto cause = std::max_element(results.begin(), results.end(),
            [](const auto& a, const auto& b) { return a.context.size() < b.context.size(); });
        QString pointer;
        for (std::size_t i = 1; i < cause->context.size(); ++i) {
            const QString step = QString::fromStdString(cause->context[i]);
            pointer = member(pointer, step.sliced(1, step.size() - 2));
        }
        return explained(receipt, pointer, QString::fromStdString(cause->description));
    }

private:
    // The part of the schema that holds for the value at a pointer.
    [[nodiscard]] const Value& ruleAt(const QString& pointer) const
    {
        const Value* rule = &document;
        for (const QString& step : pointer.split(u'/').sliced(1)) {
            const auto properties = rule->FindMember("properties");
            const auto items = rule->FindMember("items");
            if (properties != rule->MemberEnd())
                rule = &properties->value[step.toUtf8().constData()];
            else if (items != rule->MemberEnd())
                rule = &items->value;
            rule = &resolved(*rule);
        }
        return *rule;
    }

    [[nodiscard]] const Value& resolved(const Value& rule) const
    {
        const auto reference = rule.FindMember("$ref");
        if (reference == rule.MemberEnd())
            return rule;
        return *rapidjson::Pointer(reference->value.GetString()).Get(document);
    }

    [[nodiscard]] ReceiptProblem explained(
        const Value& receipt, const QString& pointer, const QString& description) const
    {
        const Value& rule = ruleAt(pointer);
        const Value* value = rapidjson::Pointer(pointer.toUtf8().constData()).Get(receipt);
        const auto properties = rule.FindMember("properties");
        if (value && value->IsObject() && properties != rule.MemberEnd()) {
            for (const auto& entry : value->GetObject()) {
                if (!properties->value.HasMember(entry.name))
                    return {0, member(pointer, text(entry.name)),
                        unknownKey(text(entry.name), properties->value)};
            }
        }
        const QString broken = value ? brokenRule(rule, *value, nameOf(pointer)) : QString();
        const QString said = broken.isEmpty() ? description : broken;
        const auto expected = rule.FindMember(textsAreRussian() ? "descriptionRu" : "description");
        // What an object or a list is for does not help where a part of it is missing.
        if (expected == rule.MemberEnd() || (value && (value->IsObject() || value->IsArray())))
            return {0, pointer, said};
        return {0, pointer, Text::tr("%1. Expected: %2").arg(said, text(expected->value))};
    }

    [[nodiscard]] static QString unknownKey(const QString& name, const Value& properties)
    {
        QStringList known;
        for (const auto& entry : properties.GetObject())
            known << text(entry.name);
        return Text::tr("unknown key \"%1\"; %2").arg(name, hintFor(name, known));
    }

    rapidjson::Document document;
    valijson::Schema rules;
};

ReceiptParser::ReceiptParser()
    : schema(std::make_unique<const Schema>())
{
}

ReceiptParser::~ReceiptParser() = default;

std::variant<QJsonObject, ReceiptProblem> ReceiptParser::parse(const QByteArray& source) const
{
    rapidjson::Document receipt;
    if (const rapidjson::ParseResult result = parseJson(source, receipt); result.IsError())
        return ReceiptProblem{lineBreaksBefore(source, result.Offset()), {},
            Text::tr("not JSON: %1").arg(Text::tr(rapidjson::GetParseError_En(result.Code())))};
    if (const auto problem = structureProblem(receipt, QString(), 0))
        return located(source, *problem);
    if (const auto problem = schema->problem(receipt))
        return located(source, *problem);
    return converted(receipt).toObject();
}

} // namespace till
