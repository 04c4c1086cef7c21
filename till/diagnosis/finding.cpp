#include "till/diagnosis/finding.h"

#include <algorithm>

namespace till {

QList<Finding> worstFirst(QList<Finding> findings)
{
    // Good news and notes stay in the order in which they were looked at.
    const auto rank = [](const Finding& finding) {
        return finding.grade == Grade::Fault ? 0 : finding.grade == Grade::Warning ? 1 : 2;
    };
    std::stable_sort(findings.begin(), findings.end(),
        [&](const Finding& a, const Finding& b) { return rank(a) < rank(b); });
    return findings;
}

} // namespace till
