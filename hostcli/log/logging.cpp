#include "hostcli/log/logging.h"

#include "host/log/secrets.h"
#include "hostcli/log/logfile.h"
#include "hostcli/log/loglines.h"
#include "hostcli/terminal/console.h"
#include "hostcli/terminal/printable.h"

#include <QLoggingCategory>

#include <memory>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace frhost {

namespace {

namespace secrets = hostruntime::secrets;

std::unique_ptr<LogFile>& openFile()
{
    static std::unique_ptr<LogFile> file;
    return file;
}

QString composed(Urgency urgency, const QString& category, const QString& text)
{
    return logLine(QDateTime::currentDateTime(), getpid(), urgency, category, text);
}

void append(const QString& line)
{
    const QString failure = openFile()->append(secrets::masked(printable(line), secrets::Audience::Anyone));
    if (failure.isEmpty())
        return;
    Console::instance().line(failure);
}

void copyToFile(const QString& text, Urgency urgency)
{
    for (const QString& line : text.split(u'\n'))
        append(composed(urgency, u"frhost"_s, line));
}

QString formatted(QtMsgType level, const QMessageLogContext& context, const QString& text)
{
    if (qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN"))
        return qFormatLogMessage(level, context, text);
    const QString category = QString::fromUtf8(context.category);
    if (Console::instance().isJournal() && !openFile())
        return u"%1: "_s.arg(category) + text;
    return composed(urgencyOf(level), category, text);
}

void toLog(QtMsgType level, const QMessageLogContext& context, const QString& text)
{
    const QtMsgType filed = filedLevel(level, text);
    if (filed != level && !QLoggingCategory(context.category).isEnabled(filed))
        return;
    const QString line = formatted(filed, context, text);
    if (openFile())
        append(line);
    else
        Console::instance().line(line, urgencyOf(filed));
}

// Qt 6.8 switches to UTF-8 by itself and says so in four lines.
void toConsoleButForLocale(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith("Detected locale "_L1))
        Console::instance().line(qFormatLogMessage(type, context, text));
}

} // namespace

void ignoreLocaleWarning()
{
    qInstallMessageHandler(toConsoleButForLocale);
}

void startLogging(const QString& level, const QString& file)
{
    if (!file.isEmpty()) {
        openFile() = std::make_unique<LogFile>(file);
        Console::instance().setCopy(&copyToFile);
    }
    QLoggingCategory::setFilterRules(filterRules(level));
    qInstallMessageHandler(toLog);
}

} // namespace frhost
