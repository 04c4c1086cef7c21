#include "till/receipts/schemarules.h"

#include "till/text.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

using rapidjson::Value;

struct Type
{
    const char* name;
    bool (*holds)(const Value& value);
    const char* text;
    // For a value in quotes that should have none.
    const char* quoted;
};

const Type types[] = {
    {"number", [](const Value& value) { return value.IsNumber(); }, QT_TRANSLATE_NOOP("Text", "a number"),
        QT_TRANSLATE_NOOP("Text", "a number, without quotes")},
    {"integer", [](const Value& value) { return value.IsInt64() || value.IsUint64(); },
        QT_TRANSLATE_NOOP("Text", "a whole number"),
        QT_TRANSLATE_NOOP("Text", "a whole number, without quotes")},
    {"boolean", [](const Value& value) { return value.IsBool(); }, QT_TRANSLATE_NOOP("Text", "true or false"),
        QT_TRANSLATE_NOOP("Text", "true or false, without quotes")},
    {"string", [](const Value& value) { return value.IsString(); },
        QT_TRANSLATE_NOOP("Text", "a text in quotes"), QT_TRANSLATE_NOOP("Text", "a text in quotes")},
    {"array", [](const Value& value) { return value.IsArray(); },
        QT_TRANSLATE_NOOP("Text", "a list in square brackets"),
        QT_TRANSLATE_NOOP("Text", "a list in square brackets")},
    {"object", [](const Value& value) { return value.IsObject(); },
        QT_TRANSLATE_NOOP("Text", "an object in curly brackets"),
        QT_TRANSLATE_NOOP("Text", "an object in curly brackets")},
};

// One name or a list of them.
QList<const Type*> typesIn(const Value& bound)
{
    QList<const Type*> found;
    for (const Type& type : types) {
        const auto isThis = [&](const Value& name) { return std::strcmp(name.GetString(), type.name) == 0; };
        if (bound.IsString() ? isThis(bound) : std::any_of(bound.Begin(), bound.End(), isThis))
            found << &type;
    }
    return found;
}

QString text(const Value& value)
{
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    return value.IsNumber() ? QString::number(value.GetDouble(), 'g', 16)
                            : QString::fromUtf8(value.GetString());
}

qsizetype lengthOf(const Value& value)
{
    return QString::fromUtf8(value.GetString(), static_cast<qsizetype>(value.GetStringLength())).size();
}

bool isIn(const Value& list, const Value& value)
{
    return std::any_of(list.Begin(), list.End(), [&](const Value& each) { return each == value; });
}

const Value* missingIn(const Value& names, const Value& value)
{
    const auto* found =
        std::find_if(names.Begin(), names.End(), [&](const Value& name) { return !value.HasMember(name); });
    return found == names.End() ? nullptr : found;
}

struct Keyword
{
    const char* name;
    bool (*isBroken)(const Value& bound, const Value& value);
    QString (*said)(const QString& name, const Value& bound, const Value& value);
};

QString saidOfType(const QString& name, const Value& bound, const Value& value)
{
    QStringList texts;
    for (const Type* type : typesIn(bound))
        texts << Text::tr(value.IsString() ? type->quoted : type->text);
    return Text::tr("%1 must be %2").arg(name, texts.join(Text::tr(" or ")));
}

QString saidOfEnum(const QString& name, const Value& bound, const Value&)
{
    QStringList values;
    for (const Value& each : bound.GetArray())
        values << text(each);
    return Text::tr("%1 must be %2").arg(name, values.join(Text::tr(" or ")));
}

QString saidOfProperties(const QString&, const Value&, const Value&)
{
    return Text::tr("a requisite must have a tag and either a value or members");
}

// In the order in which a person would correct them.
const Keyword keywords[] = {
    {"type",
        [](const Value& bound, const Value& value) {
            const auto holds = [&](const Type* type) { return type->holds(value); };
            const auto allowed = typesIn(bound);
            return std::none_of(allowed.begin(), allowed.end(), holds);
        },
        saidOfType},
    {"required",
        [](const Value& bound, const Value& value) { return value.IsObject() && missingIn(bound, value); },
        [](const QString&, const Value& bound, const Value& value) {
            return Text::tr("the key \"%1\" is missing").arg(text(*missingIn(bound, value)));
        }},
    {"enum", [](const Value& bound, const Value& value) { return !isIn(bound, value); }, saidOfEnum},
    {"minimum",
        [](const Value& bound, const Value& value) {
            return value.IsNumber() && value.GetDouble() < bound.GetDouble();
        },
        [](const QString& name, const Value& bound, const Value&) {
            return Text::tr("%1 must be at least %2").arg(name, text(bound));
        }},
    {"maximum",
        [](const Value& bound, const Value& value) {
            return value.IsNumber() && value.GetDouble() > bound.GetDouble();
        },
        [](const QString& name, const Value& bound, const Value&) {
            return Text::tr("%1 must be at most %2").arg(name, text(bound));
        }},
    {"minLength",
        [](const Value& bound, const Value& value) {
            return value.IsString() && lengthOf(value) < bound.GetInt();
        },
        [](const QString& name, const Value&, const Value&) {
            return Text::tr("%1 must not be empty").arg(name);
        }},
    {"minProperties",
        [](const Value& bound, const Value& value) {
            return value.IsObject() && static_cast<int>(value.MemberCount()) < bound.GetInt();
        },
        saidOfProperties},
    {"maxProperties",
        [](const Value& bound, const Value& value) {
            return value.IsObject() && static_cast<int>(value.MemberCount()) > bound.GetInt();
        },
        saidOfProperties},
    // The schema has one of these, which asks for the buyer's contact.
    {"contains", [](const Value&, const Value& value) { return value.IsArray(); },
        [](const QString&, const Value&, const Value&) {
            return Text::tr(
                "the buyer's telephone or e-mail is missing: a requisite with the tag 1008 and a value");
        }},
};

} // namespace

QString brokenRule(const Value& rule, const Value& value, const QString& name)
{
    for (const Keyword& keyword : keywords) {
        const auto bound = rule.FindMember(keyword.name);
        if (bound != rule.MemberEnd() && keyword.isBroken(bound->value, value))
            return keyword.said(name, bound->value, value);
    }
    return {};
}

} // namespace till
