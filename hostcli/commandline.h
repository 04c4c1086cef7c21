#pragma once

#include "hostcli/queue/queueline.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <variant>

namespace frhost {

enum class Command
{
    Describe,
    Check,
    Doctor,
    Bundle,
    Sell,
    Send,
    Info,
    Compose,
    Explain,
    Collect,
    Queue,
};

/// What the user asks for.
struct CommandLine
{
    Command command = Command::Describe;
    /// Empty when not given.
    QString config;
    QString plugin;
    bool json = false;
    QString logLevel;
    /// Empty for none.
    QString logFile;
    bool quiet = false;
    QStringList files;
    /// Folder for the pictures of QR codes; empty for none.
    QString qrDir;
    /// The journal's file; empty for the user's own.
    QString journal;
    bool usesJournal = true;
    /// Whether receipts are taken from standard input as they come.
    bool streams = false;
    /// For how long a receipt may be attempted again.
    std::chrono::seconds retryFor{0};
    /// Whether the limits of the service count as rules.
    bool strict = false;
    QString uuid;
    /// The documents to collect.
    QStringList uuids;
    /// The code or cause to explain; empty for all.
    QString cause;
    /// The archive to write.
    QString bundle;
    QueueLine queue;
};

/// An answer that ends the program without a command: help, the version, or a usage error.
struct CommandLineText
{
    QString text;
    bool isError = false;
    /// Whether an error is to be told as JSON, too.
    bool json = false;
};

/// Parses the program's arguments as main() got them.
[[nodiscard]] std::variant<CommandLine, CommandLineText> parseCommandLine(int argc, const char* const* argv);

} // namespace frhost
