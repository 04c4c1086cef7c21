#pragma once

#include <chrono>
#include <optional>
#include <vector>

namespace till {

/// Counts how often in a row a token has been renewed because the service rejected the one before, and
/// decides when to try the next one. A driver may go on without an end.
class TokenRenewals
{
public:
    /// The pause before each renewal in a row; there is none after the last. A token that has just expired is
    /// renewed at once.
    using Pauses = std::vector<std::chrono::milliseconds>;
    [[nodiscard]] static Pauses usualPauses();

    explicit TokenRenewals(Pauses beforeEach = usualPauses())
        : pauses(std::move(beforeEach))
    {
    }

    /// The service has rejected the token of a request.
    void noteRejected() { isRejected = true; }
    /// The service has accepted the token of a request.
    void noteAccepted() { forget(); }
    /// Nothing is known of the token any more.
    void forget();

    /// A token is about to be requested: how long to wait before that; none when it is of no use any more.
    [[nodiscard]] std::optional<std::chrono::milliseconds> next();
    /// Whether no token of a row was accepted and none is to be requested any more.
    [[nodiscard]] bool areExhausted() const { return isRejected && count >= pauses.size(); }
    /// Whether the token that is in use has been renewed in this row.
    [[nodiscard]] bool hasRenewed() const { return count > 0; }

private:
    Pauses pauses;
    std::size_t count = 0;
    bool isRejected = false;
};

} // namespace till
