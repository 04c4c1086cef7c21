#pragma once

#include <QLoggingCategory>

namespace bench {

/// The log as a shop runs it: warnings and errors only.
inline void quietLog()
{
    QLoggingCategory::setFilterRules(QStringLiteral("frdriver.*.debug=false\nfrdriver.*.info=false"));
}

} // namespace bench
