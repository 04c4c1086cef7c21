#include "tests/support/process.h"

#include <QElapsedTimer>

#include <csignal>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr int limitMilliseconds = 120'000;
constexpr int patienceMilliseconds = 60'000;

} // namespace

Process::Process(const QString& program, const QStringList& arguments)
    : Process(program, arguments, Setup())
{
}

Process::Process(const QString& program, const QStringList& arguments, const Setup& setup)
{
    process.setProcessEnvironment(setup.environment);
    if (!setup.outputFile.isEmpty())
        process.setStandardOutputFile(setup.outputFile);
    process.start(program, arguments);
    if (!process.waitForStarted())
        throw std::runtime_error("cannot start " + program.toStdString());
}

Process::~Process()
{
    process.kill();
    process.waitForFinished();
}

void Process::giveInput(const QByteArray& input)
{
    process.write(input);
    process.closeWriteChannel();
    process.waitForBytesWritten();
}

void Process::signal(int number) const
{
    if (process.state() == QProcess::Running)
        ::kill(static_cast<pid_t>(process.processId()), number);
}

QByteArray Process::moreOutput()
{
    process.setReadChannel(QProcess::StandardOutput);
    if (process.bytesAvailable() == 0)
        process.waitForReadyRead(limitMilliseconds);
    return process.readAllStandardOutput();
}

bool Process::hasSaid(const QByteArray& text)
{
    process.setReadChannel(QProcess::StandardError);
    for (;;) {
        err += process.readAllStandardError();
        if (err.contains(text))
            return true;
        if (!process.waitForReadyRead(patienceMilliseconds))
            return false;
    }
}

bool Process::hasEndedWithin(std::chrono::milliseconds time)
{
    return process.state() == QProcess::NotRunning || process.waitForFinished(static_cast<int>(time.count()));
}

ProcessResult Process::end()
{
    process.closeWriteChannel();
    if (!hasEndedWithin(std::chrono::milliseconds(limitMilliseconds)))
        throw std::runtime_error(process.program().toStdString() + " did not end");
    err += process.readAllStandardError();
    const int killed = process.exitStatus() == QProcess::NormalExit ? 0 : 128;
    return {killed + process.exitCode(), process.readAllStandardOutput(), err};
}

ProcessResult runProcess(const QString& program, const QStringList& arguments)
{
    return Process(program, arguments).end();
}

bool comesTrue(const std::function<bool()>& question)
{
    QElapsedTimer timer;
    timer.start();
    while (!question()) {
        if (timer.hasExpired(patienceMilliseconds))
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}
