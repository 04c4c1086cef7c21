#pragma once

#include "frbase/basicfrdriver.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// One operation of a driver: how it is called here, and what the base answers and logs.
struct Operation
{
    QString topic;
    QString name;
    /// Calls it with example arguments and returns its result in words; "nothing" for none. An exception is
    /// "throws " with its class and text.
    std::function<QString(BasicFrDriver&)> call;
    QString expectedValue;
    /// "level: text", in order.
    QStringList expectedLog = {};
    /// What the base does, in words, where the value does not tell.
    QString does = {};
    /// What the cloud driver does instead; empty where it keeps the default.
    QString cloud = {};
    /// Whether the call touches the line, so that the driver needs a port.
    bool needsPort = false;
};

/// What a call did.
struct OperationOutcome
{
    QString value;
    QStringList log;

    [[nodiscard]] bool operator==(const OperationOutcome&) const = default;
};

/// Every operation of a driver, by topic.
[[nodiscard]] const QList<Operation>& operations();

/// Calls the operation; the log must not be captured by anyone else meanwhile.
[[nodiscard]] OperationOutcome outcomeOf(const Operation& operation, BasicFrDriver& driver);

/// The table as a document for readers.
[[nodiscard]] QString operationsDocument();
