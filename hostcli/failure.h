#pragma once

#include "till/error.h"

#include <QString>

#include <stdexcept>

namespace frhost {

/// What the program's exit status tells. Of several, the highest counts.
enum class ExitCode : int
{
    /// Every receipt is registered.
    Success = 0,
    /// Something on this machine: the command line, the configuration, the credentials, the plugin, standard
    /// output, a picture or the journal that could not be written, or a receipt file that changed after it
    /// was checked.
    LocalFailure = 1,
    /// A receipt file is wrong; nothing was sent.
    WrongReceipt = 2,
    /// The service or the driver refused at least one receipt.
    Refused = 3,
    /// The outcome of a receipt is not known, there is no connection, or the run was interrupted.
    Unknown = 4,
    /// The service says that a receipt is registered, and its answer does not prove it.
    IncompleteEvidence = 5,
};

/// Ends the run: a message for people, and the exit status.
class Failure : public std::runtime_error
{
public:
    Failure(ExitCode status, const QString& message)
        : std::runtime_error(message.toStdString())
        , exitCode(status)
        , text(message)
    {
    }

    [[nodiscard]] ExitCode code() const { return exitCode; }
    [[nodiscard]] QString message() const { return text; }

private:
    ExitCode exitCode;
    QString text;
};

/// The exit status for a problem of the till library.
[[nodiscard]] constexpr ExitCode exitCodeOf(till::Problem problem)
{
    switch (problem) {
    case till::Problem::Setup:
        break;
    case till::Problem::Receipt:
        return ExitCode::WrongReceipt;
    case till::Problem::Connection:
        return ExitCode::Unknown;
    }
    return ExitCode::LocalFailure;
}

} // namespace frhost
