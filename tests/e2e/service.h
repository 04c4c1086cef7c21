#pragma once

#include "tests/support/rawserver.h"

#include <QString>

#include <functional>
#include <string>

/// A service of the tests' own in front of frhost: answers from a script, or passes requests on to the
/// emulator and does to the answers what the script says.
class Service
{
public:
    enum class Call
    {
        Token,
        Sell,
        Report,
    };

    /// One call and what can be done with it.
    class Request
    {
    public:
        Request(Peer& peer, const std::string& text, int emulatorPort);

        [[nodiscard]] Call call() const;
        /// Answers by itself.
        void answer(int status, const char* body) { peer.answer(status, body); }
        /// Answers, announces that the connection ends with it, and hangs up.
        void answerLast(int status, const char* body)
        {
            peer.answer(status, body, "Connection: close\r\n");
            peer.close();
        }
        /// Passes the request on and the answer back.
        void pass() { peer.send(forwarded()); }
        /// Passes the request on, throws the answer away and hangs up.
        void passAndHangUp();
        void hangUp() { peer.close(); }

    private:
        [[nodiscard]] std::string forwarded() const;

        Peer& peer;
        const std::string& text;
        int emulatorPort;
    };

    /// The script gets each request with its number among those of its call, counted from 1. `emulatorUrl` is
    /// empty for a service that passes nothing on.
    using Script = std::function<void(Request& request, int number)>;
    explicit Service(const Script& script, const QString& emulatorUrl = {});

    [[nodiscard]] QString url() const;
    [[nodiscard]] int count(Call call) const;
    /// Refuses every new connection from now on. May be called from the script.
    void refuseFurther() { server.refuseFurther(); }

private:
    RawServer server;
};
