#include "hostcli/log/loglines.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

// What the service answers in the course of a sale that goes well: a token that has expired or been replaced,
// a document that it does not know (yet), one that it knows already, one that it is working on.
constexpr std::array normalCodes{10, 11, 30, 33, 34};

const QString renewal = u"Срок действия токена истёк. Получаем новый токен"_s;

bool isNormalAnswer(const QString& line)
{
    static const QRegularExpression answer(u"^Ответ от сервера содержит ошибку\\. Код (\\d+), "_s);
    const QRegularExpressionMatch match = answer.match(line);
    return match.hasMatch() && std::ranges::find(normalCodes, match.captured(1).toInt()) != normalCodes.end();
}

QString levelName(Urgency urgency)
{
    switch (urgency) {
    case Urgency::Debug:
        return u"debug"_s;
    case Urgency::Info:
        return u"info"_s;
    case Urgency::Notice:
        return u"notice"_s;
    case Urgency::Warning:
        return u"warning"_s;
    case Urgency::Error:
        break;
    }
    return u"error"_s;
}

} // namespace

QStringList logLevels()
{
    return {u"debug"_s, u"info"_s, u"warning"_s, u"error"_s};
}

QString filterRules(const QString& level)
{
    QString rules;
    for (const QString& quieter : logLevels()) {
        // The older name of "error", which is Qt's, finds no equal and leaves out all others.
        if (quieter == level || quieter == logLevels().last())
            break;
        rules += u"frdriver*.%1=false\n"_s.arg(quieter);
    }
    return rules;
}

QtMsgType filedLevel(QtMsgType level, const QString& line)
{
    const bool isNormal = level == QtCriticalMsg  ? isNormalAnswer(line)
                          : level == QtWarningMsg ? line == renewal
                                                  : false;
    return isNormal ? QtInfoMsg : level;
}

Urgency urgencyOf(QtMsgType level)
{
    switch (level) {
    case QtDebugMsg:
        return Urgency::Debug;
    case QtInfoMsg:
        return Urgency::Info;
    case QtWarningMsg:
        return Urgency::Warning;
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return Urgency::Error;
}

QString logLine(
    const QDateTime& time, qint64 process, Urgency urgency, const QString& category, const QString& text)
{
    const QString stamp = time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
    return u"%1 [%2] %3 %4: "_s.arg(stamp, QString::number(process), levelName(urgency), category) + text;
}

} // namespace frhost
