#include "hostcli/log/logging.h"

#include "hostcli/terminal/console.h"

#include <QLoggingCategory>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

void toConsole(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Console::instance().line(qFormatLogMessage(type, context, text));
}

// Qt 6.8 switches to UTF-8 by itself and says so in four lines.
void toConsoleButForLocale(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith("Detected locale "_L1))
        toConsole(type, context, text);
}

} // namespace

QStringList logLevels()
{
    return {u"debug"_s, u"info"_s, u"warning"_s, u"critical"_s};
}

void ignoreLocaleWarning()
{
    qInstallMessageHandler(toConsoleButForLocale);
}

void startLogging(const QString& level)
{
    QString rules;
    for (const QString& quieter : logLevels().first(logLevels().indexOf(level)))
        rules += u"frdriver*.%1=false\n"_s.arg(quieter);
    QLoggingCategory::setFilterRules(rules);
    qSetMessagePattern(
        u"%{time HH:mm:ss.zzz} %{if-debug}debug%{endif}%{if-info}info%{endif}%{if-warning}warning%{endif}"
        u"%{if-critical}error%{endif}%{if-fatal}fatal%{endif} %{category}: %{message}"_s);
    qInstallMessageHandler(toConsole);
}

} // namespace frhost
