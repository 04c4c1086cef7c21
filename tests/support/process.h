#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <chrono>
#include <functional>

/// What a program left when it ended.
struct ProcessResult
{
    /// 128 plus the signal's number if a signal ended the program.
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

/// A running program; killed with the object unless it has ended. The emulator's tests have a runner of their
/// own, because they use no Qt, like the emulator.
class Process
{
public:
    struct Setup
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        /// Where standard output goes: a file, a device or a named pipe. Empty: to the result.
        QString outputFile = {};
    };

    /// Throws std::runtime_error when the program cannot be started.
    Process(const QString& program, const QStringList& arguments);
    Process(const QString& program, const QStringList& arguments, const Setup& setup);
    ~Process();
    Q_DISABLE_COPY_MOVE(Process)

    [[nodiscard]] qint64 id() const { return process.processId(); }
    /// Writes all of standard input.
    void giveInput(const QByteArray& input);
    void signal(int number) const;
    /// Waits for further standard output, which the result then lacks; empty at its end.
    [[nodiscard]] QByteArray moreOutput();
    /// Waits until standard error contains the text; false if the program ends without it.
    [[nodiscard]] bool hasSaid(const QByteArray& text);
    [[nodiscard]] bool hasEndedWithin(std::chrono::milliseconds time);
    /// Waits for the end; throws std::runtime_error after two minutes.
    [[nodiscard]] ProcessResult end();

private:
    QProcess process;
    QByteArray err;
};

/// Runs a program to its end.
[[nodiscard]] ProcessResult runProcess(const QString& program, const QStringList& arguments);

/// Asks until the answer is yes; false after a minute.
[[nodiscard]] bool comesTrue(const std::function<bool()>& question);
