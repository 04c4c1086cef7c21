#include "host/log/log4qt.h"

#include <QString>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace Log4Qt {

namespace {

template <typename... Arguments>
void add(QLatin1StringView level, const char* format, const Arguments&... arguments)
{
    QString text = QString::fromUtf8(format);
    if constexpr (sizeof...(arguments) > 0)
        text = text.arg(arguments...);
    Logger::lines << level + ": "_L1 + text;
}

} // namespace

void Logger::debug(const char* text) const
{
    add("debug"_L1, text);
}

void Logger::debug(const QString& text) const
{
    add("debug"_L1, "%1", text);
}

void Logger::debug(const char* format, const QString& first) const
{
    add("debug"_L1, format, first);
}

void Logger::info(const char* text) const
{
    add("info"_L1, text);
}

void Logger::info(const char* format, int first) const
{
    add("info"_L1, format, first);
}

void Logger::info(const char* format, const QString& first) const
{
    add("info"_L1, format, first);
}

void Logger::info(const char* format, int first, const QString& second) const
{
    add("info"_L1, format, QString::number(first), second);
}

void Logger::warn(const char* text) const
{
    add("warn"_L1, text);
}

void Logger::warn(const char* format, const QString& first) const
{
    add("warn"_L1, format, first);
}

void Logger::error(const char* text) const
{
    add("error"_L1, text);
}

void Logger::error(const QString& text) const
{
    add("error"_L1, "%1", text);
}

void Logger::error(const char* format, const QString& first) const
{
    add("error"_L1, format, first);
}

void Logger::error(
    const char* format, const QVariant& first, const QVariant& second, const QVariant& third) const
{
    arguments = {first, second, third};
    add("error"_L1, format, first.toString(), second.toString(), third.toString());
}

Logger* LogManager::logger(const QString& first, const QString& second)
{
    static Logger logger;
    names << first + ", "_L1 + second;
    return &logger;
}

} // namespace Log4Qt
