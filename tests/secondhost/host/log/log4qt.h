#pragma once

#include <QStringList>
#include <QVariantList>

class QString;
class QVariant;

namespace Log4Qt {

// Collects what all loggers are given.
class Logger
{
public:
    void debug(const char* text) const;
    void debug(const QString& text) const;
    void debug(const char* format, const QString& first) const;
    void info(const char* text) const;
    void info(const char* format, int first) const;
    void info(const char* format, const QString& first) const;
    void info(const char* format, int first, const QString& second) const;
    void warn(const char* text) const;
    void warn(const char* format, const QString& first) const;
    void error(const char* text) const;
    void error(const QString& text) const;
    void error(const char* format, const QString& first) const;
    void error(
        const char* format, const QVariant& first, const QVariant& second, const QVariant& third) const;

    // "level: text".
    inline static QStringList lines;
    // Of the last error() with three arguments.
    inline static QVariantList arguments;
};

struct LogManager
{
    static Logger* logger(const QString& first, const QString& second);

    // "first, second" of all loggers asked for.
    inline static QStringList names;
};

} // namespace Log4Qt
