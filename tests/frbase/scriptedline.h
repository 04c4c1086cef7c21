#pragma once

#include "frbase/basicfrdriver.h"
#include "host/abstractserialdriver.h"

#include <QList>

#include <string>

/// What a line or a device does when it is called, one letter per call:
/// '+' succeeds, '-' throws FrNoConnectionException, 'p' ComDriverException, 'c' FrCommandException,
/// 'd' DriverException, 's' std::runtime_error. A call beyond the script fails the test.
class Script
{
public:
    explicit Script(std::string letters = {})
        : answers(std::move(letters))
    {
    }

    void play();
    /// The letters that were not used.
    [[nodiscard]] std::string rest() const { return answers.substr(next); }

private:
    std::string answers;
    std::size_t next = 0;
};

/// A line that accepts everything.
class WillingLine : public AbstractSerialDriver
{
public:
    [[nodiscard]] int getPortKind() const override { return 1; }
    void setBaudRate(int /*baudRate*/) override {}
};

/// A line that follows its script and logs each call, so that calls and log lines are in one sequence.
class ScriptedLine : public AbstractSerialDriver
{
public:
    [[nodiscard]] int getPortKind() const override;
    void setBaudRate(int baudRate) override;

    /// What getPortKind() returns, in turn and from the beginning again.
    QList<int> kinds{1};
    Script script;

private:
    mutable qsizetype asked = 0;
};

/// A driver whose device follows its script and logs each handshake; the inside of the base is visible.
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
