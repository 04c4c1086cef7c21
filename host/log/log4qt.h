#pragma once

#include "host/export.h"

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>
#include <QVariant>

namespace hostruntime {
class ExchangeLog;
}

/// The logging calls that drivers use, on top of Qt's categorised logging.
///
/// The category consists of the logger's two names, joined by a dot ("frdriver.atolonline_0"), so
/// QT_LOGGING_RULES, QLoggingCategory::setFilterRules and message handlers work as in any Qt program.
///
/// Secrets (host/log/secrets.h) are masked where a line may hold one: in the texts that fill a format and in
/// the lines that are handed over as a QString, because they may be the service's words. What the program
/// itself says is left as it is, even if it happens to hold the text of a password: formats, integers, and
/// the lines of hostruntime::isOwnLine(), whose texts the service has no part in.
namespace Log4Qt {

/// A named logger. It belongs to the LogManager; callers keep a borrowed pointer and never delete it.
///
/// Formats are UTF-8 with the placeholders %1 to %3, which are filled in argument order and in a single pass:
/// an argument that itself contains "%2" stays as it is. Thread-safe.
class HOST_EXPORT Logger
{
public:
    explicit Logger(const QByteArray& categoryName);
    Q_DISABLE_COPY_MOVE(Logger)

    /// Whether lines of this level are written; to be asked before one is composed that is costly.
    [[nodiscard]] bool isDebugEnabled() const { return category.isDebugEnabled(); }
    [[nodiscard]] bool isInfoEnabled() const { return category.isInfoEnabled(); }

    void debug(const char* message) const;
    void debug(const QString& message) const;
    void debug(const char* format, const QString& first) const;

    void info(const char* message) const;
    void info(const char* format, int first) const;
    void info(const char* format, const QString& first) const;
    void info(const char* format, int first, const QString& second) const;

    void warn(const char* message) const;
    void warn(const char* format, const QString& first) const;

    void error(const char* message) const;
    void error(const QString& message) const;
    void error(const char* format, const QString& first) const;
    void error(
        const char* format, const QVariant& first, const QVariant& second, const QVariant& third) const;

private:
    // Only for the runtime's own lines, which are costly to compose and masked by their author.
    friend class hostruntime::ExchangeLog;
    void writeAsIs(QtMsgType level, const QString& line) const;

    QByteArray name;
    QLoggingCategory category;
};

/// Hands out loggers: one for each pair of names, for the life of the process. Thread-safe.
class HOST_EXPORT LogManager
{
public:
    /// The logger "first.second", or "first" when second is empty. Never null.
    [[nodiscard]] static Logger* logger(const QString& first, const QString& second);
};

} // namespace Log4Qt
