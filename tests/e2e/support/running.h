#pragma once

#include "tests/e2e/support/process.h"

#include <QProcess>

#include <chrono>
#include <functional>

/// A program while it runs; killed with the object when it has not ended.
class Running
{
public:
    /// Standard output goes to the file, which may be a named pipe, or is kept when none is given.
    Running(const QString& program, const QStringList& arguments, const QString& outputFile = {});
    ~Running();
    Q_DISABLE_COPY_MOVE(Running)

    [[nodiscard]] qint64 id() const { return process.processId(); }
    /// Standard input, all of it.
    void giveInput(const QByteArray& input);
    void signal(int number) const;
    /// Waits until standard error holds the text; false when the program ends without it.
    [[nodiscard]] bool hasSaid(const QString& text);
    [[nodiscard]] bool hasEndedWithin(std::chrono::milliseconds time);
    /// Waits for the end, at most two minutes. The exit code of a program that a signal ended is 128 and its
    /// number.
    [[nodiscard]] Ran end();

private:
    QProcess process;
    QString err;
};

/// Asks again until the answer is yes; false after a minute.
[[nodiscard]] bool comesTrue(const std::function<bool()>& question);
