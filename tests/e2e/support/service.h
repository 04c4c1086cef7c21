#pragma once

#include "tests/support/wire/rawserver.h"

#include <QString>

#include <functional>
#include <string>

/// A scripted service for answers that no fault of the emulator produces.
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
        /// Answers with the announcement that the connection closes, and closes it.
        void answerLast(int status, const char* body)
        {
            peer.answer(status, body, "Connection: close\r\n");
            peer.close();
        }

    private:
        Peer& peer;
        const std::string& text;
    };

    using Script = std::function<void(Request& request)>;
    explicit Service(const Script& script);

    [[nodiscard]] QString url() const;
    /// Refuses every new connection from now on. May be called from the script.
    void refuseFurther() { server.refuseFurther(); }

private:
    RawServer server;
};
