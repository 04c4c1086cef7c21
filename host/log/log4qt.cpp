#include "host/log/log4qt.h"

#include "host/log/ownlines.h"
#include "host/log/secrets.h"

#include <QMutex>

#include <initializer_list>
#include <memory>
#include <string>
#include <unordered_map>

namespace Log4Qt {

namespace {

namespace secrets = hostruntime::secrets;

// What fills a placeholder.
struct Argument
{
    Argument(int number)
        : text(QString::number(number))
        , isNumber(true)
    {
    }
    Argument(const QVariant& value)
        : text(value.toString())
        , isNumber(value.typeId() == QMetaType::Int || value.typeId() == QMetaType::LongLong ||
                   value.typeId() == QMetaType::Double)
    {
    }
    Argument(const QString& words)
        : text(words)
    {
    }

    QString text;
    bool isNumber = false;
};

QString masked(QtMsgType level, const QString& text)
{
    return secrets::masked(
        text, level == QtDebugMsg ? secrets::Audience::Developer : secrets::Audience::Anyone);
}

QString filled(QtMsgType level, const char* format, std::initializer_list<Argument> arguments)
{
    const bool isOwn = hostruntime::isOwnLine(format);
    const QString pattern = QString::fromUtf8(format);
    QString text;
    text.reserve(pattern.size() + 64);
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const qsizetype number =
            pattern.at(i) == u'%' && i + 1 < pattern.size() ? pattern.at(i + 1).unicode() - u'0' : 0;
        if (number >= 1 && number <= static_cast<qsizetype>(arguments.size())) {
            const Argument& argument = arguments.begin()[number - 1];
            text += isOwn || argument.isNumber ? argument.text : masked(level, argument.text);
            ++i;
        } else {
            text += pattern.at(i);
        }
    }
    return text;
}

void write(const QLoggingCategory& category, QtMsgType level, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    const QMessageLogger out(nullptr, 0, nullptr, category.categoryName());
    switch (level) {
    case QtDebugMsg:
        out.debug(category, "%s", utf8.constData());
        break;
    case QtInfoMsg:
        out.info(category, "%s", utf8.constData());
        break;
    case QtWarningMsg:
        out.warning(category, "%s", utf8.constData());
        break;
    default:
        out.critical(category, "%s", utf8.constData());
        break;
    }
}

void write(const QLoggingCategory& category, QtMsgType level, const char* format,
    std::initializer_list<Argument> arguments = {})
{
    if (category.isEnabled(level))
        write(category, level, filled(level, format, arguments));
}

void writeWords(const QLoggingCategory& category, QtMsgType level, const QString& words)
{
    if (category.isEnabled(level))
        write(category, level, hostruntime::isOwnLine(words) ? words : masked(level, words));
}

} // namespace

Logger::Logger(const QByteArray& categoryName)
    : name(categoryName)
    , category(name.constData())
{
}

void Logger::debug(const char* message) const
{
    write(category, QtDebugMsg, message);
}

void Logger::debug(const QString& message) const
{
    writeWords(category, QtDebugMsg, message);
}

void Logger::debug(const char* format, const QString& first) const
{
    write(category, QtDebugMsg, format, {first});
}

void Logger::info(const char* message) const
{
    write(category, QtInfoMsg, message);
}

void Logger::info(const char* format, int first) const
{
    write(category, QtInfoMsg, format, {first});
}

void Logger::info(const char* format, const QString& first) const
{
    write(category, QtInfoMsg, format, {first});
}

void Logger::info(const char* format, int first, const QString& second) const
{
    write(category, QtInfoMsg, format, {first, second});
}

void Logger::warn(const char* message) const
{
    write(category, QtWarningMsg, message);
}

void Logger::warn(const char* format, const QString& first) const
{
    write(category, QtWarningMsg, format, {first});
}

void Logger::error(const char* message) const
{
    write(category, QtCriticalMsg, message);
}

void Logger::error(const QString& message) const
{
    writeWords(category, QtCriticalMsg, message);
}

void Logger::error(const char* format, const QString& first) const
{
    write(category, QtCriticalMsg, format, {first});
}

void Logger::error(
    const char* format, const QVariant& first, const QVariant& second, const QVariant& third) const
{
    write(category, QtCriticalMsg, format, {first, second, third});
}

void Logger::writeAsIs(QtMsgType level, const QString& line) const
{
    if (category.isEnabled(level))
        write(category, level, line);
}

Logger* LogManager::logger(const QString& first, const QString& second)
{
    static QMutex guard;
    static std::unordered_map<std::string, std::unique_ptr<Logger>> loggers;
    const QString name = second.isEmpty() ? first : first + u'.' + second;
    const QMutexLocker lock(&guard);
    auto& logger = loggers[name.toStdString()];
    if (!logger)
        logger = std::make_unique<Logger>(name.toUtf8());
    return logger.get();
}

} // namespace Log4Qt
