#pragma once

#include "frbase/basicfrdriver.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// One operation of a driver: how it is called here, and what the base returns and logs.
struct Operation
{
    QString name;
    /// Calls it with example arguments and returns its result in words: "nothing" for void.
    std::function<QString(BasicFrDriver&)> call;
    QString value;
    /// "level: text", in order.
    QStringList log = {};
    /// What the base does, in words, where the value does not say it.
    QString does = {};
    /// What the cloud driver does instead; empty where it keeps the default.
    QString cloud = {};
    /// Whether the driver must have a port.
    bool needsPort = false;
};

struct OperationTopic
{
    QString title;
    QList<Operation> operations;
};

/// Every operation of a driver.
[[nodiscard]] const QList<OperationTopic>& operationTopics();
[[nodiscard]] QList<Operation> allOperations();

/// What a call of the operation should come to: its value, then the log lines.
[[nodiscard]] QStringList expectedOf(const Operation& operation);
/// What it does come to; the value of a call that throws is "throws " with the exception's class and text.
[[nodiscard]] QStringList outcomeOf(const Operation& operation, BasicFrDriver& driver);
