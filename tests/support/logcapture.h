#pragma once

#include "tests/support/qtprinters.h"

#include <QStringList>

#include <memory>

/// Collects what is logged while it lives, whatever the thread; one capture at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY_MOVE(LogCapture)

    /// The lines so far, each as "level: text" with the levels debug, info, warn and error.
    [[nodiscard]] QStringList lines() const;
    /// The same, and forgets them.
    QStringList take();
    /// The logging categories of the lines so far, in the same order.
    [[nodiscard]] QStringList categories() const;
};
