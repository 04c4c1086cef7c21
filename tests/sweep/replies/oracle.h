#pragma once

#include "tests/sweep/replies/reply.h"

#include <string>
#include <vector>

/// What is wrong with a line of output about the honest receipt, as frhost writes it with --json, after these
/// replies. Written from what the words promise, and not from how the till comes to use them.
[[nodiscard]] std::vector<std::string> contradictions(
    const nlohmann::json& line, const std::vector<GivenReply>& replies);
