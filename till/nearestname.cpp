#include "till/nearestname.h"

#include "till/text.h"

#include <algorithm>
#include <numeric>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// Levenshtein's distance, ignoring case; a name that was cut short or made longer is as near as one with a
// wrong letter.
int distance(const QString& from, const QString& to)
{
    const QString a = from.toCaseFolded();
    const QString b = to.toCaseFolded();
    if (a.startsWith(b) || b.startsWith(a))
        return a == b ? 0 : 1;
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar c : a) {
        int diagonal = row[0]++;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int replaced = diagonal + (c == b.at(static_cast<qsizetype>(j) - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

} // namespace

QString nearestName(const QString& name, const QStringList& known)
{
    const auto best = std::min_element(known.begin(), known.end(),
        [&](const QString& a, const QString& b) { return distance(name, a) < distance(name, b); });
    const int limit = std::max(1, static_cast<int>(name.size()) / 3);
    return best == known.end() || distance(name, *best) > limit ? QString() : *best;
}

QString hintFor(const QString& name, const QStringList& known)
{
    const QString nearest = nearestName(name, known);
    return nearest.isEmpty() ? Text::tr("there are %1").arg(known.join(u", "_s))
                             : Text::tr("did you mean \"%1\"?").arg(nearest);
}

} // namespace till
