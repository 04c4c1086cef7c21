#pragma once

#include "emulator/rules/revision.h"
#include "tests/emulator/support/goodreceipt.h"

#include <string>
#include <vector>

/// What the editions of the rules answer to bodies: one row for each rule, limit and name.
namespace editions {

using emulator::Json;

inline constexpr emulator::Edition older{.revision = emulator::Revision::May2023};
inline constexpr emulator::Edition strict{.revision = emulator::Revision::December2025, .strict = true};
inline constexpr emulator::Edition usual{};

/// What the answer says is wrong, by edition; empty where the body is accepted.
struct Answers
{
    std::string inOlder{};
    std::string inStrict{};
    std::string inUsual{};
};

[[nodiscard]] Answers accepted();
[[nodiscard]] Answers refused(const std::string& wrong);
/// Until a revision or a practice that is milder.
[[nodiscard]] Answers refusedInOlder(const std::string& wrong);
[[nodiscard]] Answers refusedByLetter(const std::string& wrong);
[[nodiscard]] Answers refusedInNewer(const std::string& wrong);

/// A good body with one change.
struct Row
{
    std::string rule;
    /// d: described by the service; r: recorded; o: told by users; ?: inferred.
    char source;
    std::string pointer;
    Json value;
    Answers answers;
};

/// As many letters of two bytes.
[[nodiscard]] std::string letters(std::size_t count);

inline const std::string item = "/receipt/items/0";

/// Changes of a good receipt.
[[nodiscard]] std::vector<Row> envelopeRows();
[[nodiscard]] std::vector<Row> sumRows();
[[nodiscard]] std::vector<Row> itemRows();
[[nodiscard]] std::vector<Row> codeRows();
[[nodiscard]] std::vector<Row> nameRows();
/// Changes of the item of an agent's receipt.
[[nodiscard]] Json agentReceipt();
[[nodiscard]] std::vector<Row> agentRows();
/// Changes of a good correction.
[[nodiscard]] std::vector<Row> correctionRows();

} // namespace editions
