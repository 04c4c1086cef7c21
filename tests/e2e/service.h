#pragma once

#include "tests/support/rawserver.h"

#include <QString>

#include <functional>
#include <string>

/// A service of the tests' own in front of frhost, for answers that no fault of the emulator gives.
class Service
{
public:
    enum class Call
    {
        Token,
        Sell,
        Report,
    };

    /// One call and its answer.
    class Request
    {
    public:
        Request(Peer& peer, const std::string& text);

        [[nodiscard]] Call call() const;
        void answer(int status, const char* body) { peer.answer(status, body); }

    private:
        Peer& peer;
        const std::string& text;
    };

    using Script = std::function<void(Request& request)>;
    explicit Service(const Script& script);

    [[nodiscard]] QString url() const;

private:
    RawServer server;
};
