#include "till/causes/causes.h"

#include "till/language.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr std::array nextSteps{
    std::pair{NextStep::None, "none"},
    std::pair{NextStep::Rerun, "rerun"},
    std::pair{NextStep::Correct, "correct"},
    std::pair{NextStep::NewId, "new-id"},
    std::pair{NextStep::Account, "account"},
};

NextStep nextStepNamed(const QString& name)
{
    for (const auto& [step, known] : nextSteps) {
        if (name == QLatin1StringView(known))
            return step;
    }
    throw std::logic_error("unknown next step: " + name.toStdString());
}

CauseTexts textsIn(const QJsonObject& json)
{
    // The documents that are made of the same texts know bold letters.
    const auto text = [&](const char* key) {
        return json.value(QLatin1StringView(key)).toString().remove("**"_L1);
    };
    return {text("cause"), text("advice"), text("cashier"), text("administrator"), text("programmer")};
}

Cause causeFrom(const QString& kind, const QJsonObject& json)
{
    Cause cause;
    cause.kind = kind;
    cause.names = json.value("causes"_L1).toVariant().toStringList();
    cause.words = json.value("words"_L1).toVariant().toStringList();
    cause.seen = json.value("seen"_L1).toString();
    cause.outcome = json.value("outcome"_L1).toString();
    cause.next = nextStepNamed(json.value("next"_L1).toString());
    cause.english = textsIn(json.value("en"_L1).toObject());
    cause.russian = textsIn(json.value("ru"_L1).toObject());
    return cause;
}

QList<Cause> readAll()
{
    QList<Cause> all;
    for (const QString& kind : {u"service"_s, u"transport"_s, u"results"_s}) {
        QFile file(u":/till/causes/%1.json"_s.arg(kind));
        if (!file.open(QIODevice::ReadOnly))
            throw std::logic_error("the table of causes is not embedded");
        for (const QJsonValue& row : QJsonDocument::fromJson(file.readAll()).array())
            all << causeFrom(kind, row.toObject());
    }
    return all;
}

bool mentions(const QString& text, const QStringList& words)
{
    return std::ranges::any_of(words,
        [&](const QString& word) { return !word.isEmpty() && text.contains(word, Qt::CaseInsensitive); });
}

// What the driver, the service or a message of our own says, of several the last and longest.
const Cause* causeSeenIn(const QString& text)
{
    const Cause* found = nullptr;
    std::pair<qsizetype, qsizetype> best{-1, 0};
    for (const Cause& cause : causes()) {
        const qsizetype at =
            cause.seen.isEmpty() ? -1 : text.lastIndexOf(cause.seen, -1, Qt::CaseInsensitive);
        if (at >= 0 && std::pair(at, cause.seen.size()) > best) {
            best = {at, cause.seen.size()};
            found = &cause;
        }
    }
    return found;
}

} // namespace

QString nextStepName(NextStep step)
{
    const auto* found = std::ranges::find(nextSteps, step, &decltype(nextSteps)::value_type::first);
    return QString::fromLatin1(found->second);
}

const QList<Cause>& causes()
{
    static const QList<Cause> all = readAll();
    return all;
}

const Cause* causeNamed(const QString& name)
{
    for (const Cause& cause : causes()) {
        if (cause.names.contains(name))
            return &cause;
    }
    return nullptr;
}

const Cause* causeOfFailure(const QString& words)
{
    for (const Cause& cause : causes()) {
        if (cause.kind == "transport"_L1 &&
            mentions(words, cause.words.isEmpty() ? cause.names : cause.words))
            return &cause;
    }
    return nullptr;
}

const Cause* causeIn(const QString& text)
{
    if (const Cause* cause = causeOfFailure(text))
        return cause;
    for (const Cause& cause : causes()) {
        if (mentions(text, {cause.english.cause, cause.russian.cause}))
            return &cause;
    }
    return causeSeenIn(text);
}

const CauseTexts& textsOf(const Cause& cause)
{
    return textsAreRussian() ? cause.russian : cause.english;
}

} // namespace till
