#include "till/causes/causes.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

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
    return {json.value("cashier"_L1).toString(), json.value("administrator"_L1).toString(),
        json.value("programmer"_L1).toString()};
}

Cause causeFrom(const QString& kind, const QJsonObject& json)
{
    Cause cause;
    cause.kind = kind;
    cause.names = json.value("causes"_L1).toVariant().toStringList();
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

const Cause* causeIn(const QString& text)
{
    const Cause* found = nullptr;
    std::pair<qsizetype, qsizetype> best{-1, 0};
    for (const Cause& cause : causes()) {
        // A number may be anything, and our own names are everyday words.
        const QStringList words = cause.kind == "transport"_L1 ? cause.names
                                  : cause.seen.isEmpty()       ? QStringList()
                                                               : QStringList{cause.seen};
        for (const QString& word : words) {
            const qsizetype at = text.lastIndexOf(word, -1, Qt::CaseInsensitive);
            if (at >= 0 && std::pair(at, word.size()) > best) {
                best = {at, word.size()};
                found = &cause;
            }
        }
    }
    return found;
}

const CauseTexts& textsOf(const Cause& cause)
{
    return QLocale().language() == QLocale::Russian ? cause.russian : cause.english;
}

} // namespace till
