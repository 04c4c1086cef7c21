#pragma once

#include "tests/support/qtprinters.h"

#include <QStringList>

#include <memory>

/// While it lives, collects what all threads log. Only one may live at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY_MOVE(LogCapture)

    /// The lines so far, each as "level: text" with the levels debug, info, warn and error.
    [[nodiscard]] QStringList lines() const;
    /// Returns the lines so far and forgets them.
    QStringList take();
    /// The logging categories of the lines so far, in the same order.
    [[nodiscard]] QStringList categories() const;
};
