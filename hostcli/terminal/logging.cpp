#include "hostcli/terminal/logging.h"

#include "hostcli/terminal/console.h"

#include <QLoggingCategory>

namespace frhost {

namespace {

void toConsole(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Console::instance().line(qFormatLogMessage(type, context, text));
}

} // namespace

QStringList logLevels()
{
    return {QStringLiteral("debug"), QStringLiteral("info"), QStringLiteral("warning"),
        QStringLiteral("critical")};
}

void startLogging(const QString& level)
{
    QString rules;
    for (const QString& quieter : logLevels().first(logLevels().indexOf(level)))
        rules += QStringLiteral("frdriver*.%1=false\n").arg(quieter);
    QLoggingCategory::setFilterRules(rules);
    qSetMessagePattern(QStringLiteral(
        "%{time HH:mm:ss.zzz} %{if-debug}debug%{endif}%{if-info}info%{endif}%{if-warning}warning%{endif}"
        "%{if-critical}error%{endif}%{if-fatal}fatal%{endif} %{category}: %{message}"));
    qInstallMessageHandler(toConsole);
}

} // namespace frhost
