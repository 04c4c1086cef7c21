#pragma once

#include <string>
#include <string_view>

namespace emulator {

/// A revision of the service's public description, by year and month.
enum class Revision : int
{
    May2023 = 202305,
    December2025 = 202512
};

inline constexpr Revision newestRevision = Revision::December2025;

struct RevisionName
{
    Revision revision;
    std::string_view name;
};

inline constexpr RevisionName revisions[] = {
    {Revision::May2023, "2023-05"},
    {Revision::December2025, "2025-12"},
};

[[nodiscard]] constexpr std::string_view nameOf(Revision revision)
{
    for (const RevisionName& row : revisions) {
        if (row.revision == revision)
            return row.name;
    }
    return {};
}

/// Which rules are in force.
struct Edition
{
    Revision revision = newestRevision;
    /// Whether to insist on the description where the service itself is known to be milder.
    bool strict = false;
};

/// When a rule is in force. Of the years of the older revision it is not known how mild the service was.
enum class Scope
{
    Always,
    Until2023, ///< in the older revision
    Since2025, ///< in the newer one
    Letter,    ///< in the older revision, and in the newer one if the edition is strict
    Practice   ///< only in the newer revision as the service applies it
};

/// Where a rule is known from.
enum class Source : char
{
    Described = 'd',
    Recorded = 'r', ///< answers of the service
    Told = 'o',     ///< by users
    Inferred = '?'
};

/// As in the tables of the rules.
[[nodiscard]] inline std::string letterOf(Source source)
{
    return {static_cast<char>(source)};
}

[[nodiscard]] constexpr bool covers(Scope scope, const Edition& edition)
{
    const bool newer = edition.revision >= Revision::December2025;
    switch (scope) {
    case Scope::Always:
        return true;
    case Scope::Until2023:
        return !newer;
    case Scope::Since2025:
        return newer;
    case Scope::Letter:
        return !newer || edition.strict;
    case Scope::Practice:
        return newer && !edition.strict;
    }
    return false;
}

} // namespace emulator
