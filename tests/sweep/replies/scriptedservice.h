#pragma once

#include "tests/support/wire/rawserver.h"
#include "tests/sweep/replies/reply.h"

#include <mutex>

/// A service on loopback that answers as its script says and then closes each connection.
class ScriptedService
{
public:
    explicit ScriptedService(const Script& script);

    [[nodiscard]] std::string url() const { return server.url() + "/possystem/v4/"; }
    /// The replies so far, in order.
    [[nodiscard]] std::vector<GivenReply> given() const;

private:
    void serve(Peer& peer, const std::string& request);

    mutable std::mutex guard;
    Script rest;
    std::vector<GivenReply> replies;
    // Last, because it calls serve() from its threads.
    RawServer server;
};
