#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <vector>

namespace hostruntime {

/// A part of a text.
struct Span
{
    qsizetype begin = 0;
    qsizetype end = 0;
};

using Spans = std::vector<Span>;

/// Finds values in a text in one pass, however many there are. It never changes, so threads may share it.
class SecretSearch
{
public:
    void add(const QString& value);

    /// Adds every occurrence of a value in any spelling (host/log/spelling.h), of a short value only in
    /// quotes. Where `isQuoted`, the whole text counts as one in quotes.
    void find(QStringView text, bool isQuoted, Spans& found) const;

private:
    struct Wanted
    {
        QString value;
        bool isShort = false;
    };

    void findAt(qsizetype from, char16_t unit, QStringView text, Spans& found) const;

    // Most characters of a text begin no value.
    std::array<bool, 256> begins{};
    std::array<std::vector<Wanted>, 256> byBegin;
};

} // namespace hostruntime
