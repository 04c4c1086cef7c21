#include "tests/e2e/support/running.h"

#include <QElapsedTimer>

#include <csignal>
#include <stdexcept>
#include <tuple>

namespace {

constexpr int limitMilliseconds = 120000;
constexpr int patienceMilliseconds = 60000;

} // namespace

Running::Running(const QString& program, const QStringList& arguments, const QString& outputFile)
{
    process.setProcessEnvironment(testEnvironment());
    if (!outputFile.isEmpty())
        process.setStandardOutputFile(outputFile);
    process.start(program, arguments);
    if (!process.waitForStarted())
        throw std::runtime_error("cannot start " + program.toStdString());
}

Running::~Running()
{
    process.kill();
    process.waitForFinished();
}

void Running::signal(int number) const
{
    if (process.state() == QProcess::Running)
        ::kill(static_cast<pid_t>(process.processId()), number);
}

void Running::giveInput(const QByteArray& input)
{
    process.write(input);
    process.closeWriteChannel();
    process.waitForBytesWritten();
}

bool Running::hasSaid(const QString& text)
{
    process.setReadChannel(QProcess::StandardError);
    for (;;) {
        err += QString::fromUtf8(process.readAllStandardError());
        if (err.contains(text))
            return true;
        if (!process.waitForReadyRead(patienceMilliseconds))
            return false;
    }
}

bool Running::hasEndedWithin(std::chrono::milliseconds time)
{
    return process.state() == QProcess::NotRunning || process.waitForFinished(static_cast<int>(time.count()));
}

Ran Running::end()
{
    process.closeWriteChannel();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(limitMilliseconds))
        throw std::runtime_error(process.program().toStdString() + " did not end");
    err += QString::fromUtf8(process.readAllStandardError());
    const int killed = process.exitStatus() == QProcess::NormalExit ? 0 : 128;
    return withoutSecrets(
        {killed + process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()), err});
}

bool comesTrue(const std::function<bool()>& question)
{
    QElapsedTimer timer;
    timer.start();
    while (!question()) {
        if (timer.hasExpired(patienceMilliseconds))
            return false;
    }
    return true;
}
