#pragma once

#include "tests/queue/properties/actor.h"
#include "tests/queue/properties/model.h"

#include <array>
#include <cstdint>
#include <span>

/// What is done, by whom, to which receipt, how, and where it is cut off: any numbers will do.
using Step = std::array<std::uint8_t, 6>;

/// One who is about to do something.
struct Turn
{
    Actor& actor;
    /// The register.
    std::size_t where;
    Step step;
    /// Grows with every turn.
    int serial;
    /// Workers whose process is alive.
    std::set<qint64> living;
    /// What the reader of the register's results has seen: the cursor, and the number in the result.
    qint64 cursor;
    int read;

    [[nodiscard]] QString id() const { return idAt(step[2]); }
    [[nodiscard]] static QString idAt(int any) { return QString::number(any % 5); }
    // Of ids that are new, too.
    [[nodiscard]] QString successor() const { return QString::number(step[3] % 20); }
    [[nodiscard]] QString goods() const
    {
        return step[3] % 4 == 0 ? QStringLiteral("bread") : QStringLiteral("milk");
    }
};

/// Something that can be done to the store, and what it means for the model. Both answer in the same words.
struct Deed
{
    const char* name;
    QString (*inStore)(Turn& turn);
    /// Appends the states between the transactions, where there are several.
    QString (*inModel)(Model& model, const Turn& turn, std::vector<Model>& between);
};

/// All; those that a sequence needs often stand several times.
[[nodiscard]] std::span<const Deed> deeds();
