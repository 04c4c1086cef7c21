#pragma once

#include "till/error.h"

#include <QList>
#include <QString>

namespace till {

/// How a finding bears on the work.
enum class Grade
{
    /// Receipts cannot be registered like this.
    Fault,
    /// They can, but something is wrong or soon will be.
    Warning,
    /// Nothing is wrong, for whoever looks for a fault.
    Note,
    Good,
};

/// One thing that was looked at.
struct Finding
{
    Grade grade = Grade::Good;
    /// What was looked at, in a word or two.
    QString subject;
    /// What is the case and, where something is wrong, what to do.
    QString text;
    /// What kind of problem a fault is.
    Problem problem = Problem::Setup;
};

/// The findings, what is wrong first, otherwise in their order.
[[nodiscard]] QList<Finding> worstFirst(QList<Finding> findings);

} // namespace till
