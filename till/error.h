#pragma once

#include <QString>

#include <stdexcept>

namespace till {

/// What keeps the work from being done.
enum class Problem
{
    /// The plugin, the configuration, the credentials, or a file that changed while it was in use.
    Setup,
    /// A receipt file is wrong.
    Receipt,
    /// The service cannot be reached.
    Connection,
};

/// The work cannot be done, or not be finished. The message is for people: it names file and place, says what
/// is wrong and what to do.
class Error : public std::runtime_error
{
public:
    Error(Problem problem, const QString& message)
        : std::runtime_error(message.toStdString())
        , cause(problem)
        , text(message)
    {
    }

    [[nodiscard]] Problem problem() const { return cause; }
    [[nodiscard]] QString message() const { return text; }

private:
    Problem cause;
    QString text;
};

} // namespace till
