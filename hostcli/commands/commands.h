#pragma once

#include "hostcli/commandline.h"
#include "hostcli/failure.h"
#include "hostcli/terminal/output.h"

namespace frhost {

// The commands. Each writes its data to the output and all else to the console, and throws Failure or
// till::Error for what keeps it from its work.

[[nodiscard]] ExitCode describe(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode check(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode doctor(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode bundle(const CommandLine& line, Output& output);
/// Both `sell` and `send`.
[[nodiscard]] ExitCode submit(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode info(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode compose(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode collect(const CommandLine& line, Output& output);
[[nodiscard]] ExitCode explain(const CommandLine& line, Output& output);

/// Reports a wrong command line; returns the exit status for it.
[[nodiscard]] ExitCode reportUsageError(const CommandLineText& answer, Output& output);

/// Reports what kept a command from its work; returns the exit status for it.
[[nodiscard]] ExitCode reportFailure(const CommandLine& line, Output& output, const Failure& failure);
[[nodiscard]] ExitCode reportFailure(const CommandLine& line, Output& output, const till::Error& error);

/// Carries out the command; a failed output is an error of its own.
[[nodiscard]] ExitCode run(const CommandLine& line, Output& output);

} // namespace frhost
