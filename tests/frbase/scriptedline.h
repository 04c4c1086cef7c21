#pragma once

#include "frbase/basicfrdriver.h"
#include "host/abstractserialdriver.h"

#include <QList>

#include <string>

/// What a line or a device does when it is called, a letter a call:
/// '+' succeeds, '-' FrNoConnectionException, 'p' ComDriverException, 'c' FrCommandException,
/// 'd' DriverException, 's' std::runtime_error. A call that is not in the script fails the test.
class Script
{
public:
    explicit Script(std::string letters = {})
        : answers(std::move(letters))
    {
    }

    void play();
    void append(const std::string& letters) { answers += letters; }
    /// What has not been called.
    [[nodiscard]] std::string rest() const { return answers.substr(next); }

private:
    std::string answers;
    std::size_t next = 0;
};

/// Writes to the log, so that calls and log lines stand in one sequence.
void note(const QString& call);

/// A line that answers as its script says and notes each call.
class ScriptedLine : public AbstractSerialDriver
{
public:
    [[nodiscard]] int getPortKind() const override;
    void setBaudRate(int baudRate) override;

    /// Answers of getPortKind(), taken in turn and from the beginning again.
    QList<int> kinds{1};
    Script script;
    /// The speed that was set last and was not refused.
    int baudRate = 1200;

private:
    mutable qsizetype asked = 0;
};

/// A driver whose device answers as its script says, with the inside of the base to look at.
class ScriptedDriver : public BasicFrDriver
{
public:
    explicit ScriptedDriver(AbstractSerialDriver* line, BasicFrSettings* frSettings = nullptr)
        : BasicFrDriver(line, QStringLiteral("scripted"), frSettings)
    {
    }

    void setConnection() override;

    using BasicFrDriver::baudRates;
    using BasicFrDriver::connectedOnce;
    using BasicFrDriver::currentBaudRate;
    using BasicFrDriver::defaultBaudRate;
    using BasicFrDriver::portClosed;

    Script script;
};
