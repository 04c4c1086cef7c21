#pragma once

#include "emulator/emulator.h"
#include "tests/emulator/support/goodreceipt.h"
#include "tests/emulator/support/rawclient.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

/// Runs an emulator on a free port with a clock that only the test advances.
class RunningEmulator : public testing::Test
{
protected:
    static constexpr auto base = "/possystem/v4/";

    RunningEmulator();
    ~RunningEmulator() override;

    /// Starts the emulator with `options` after stopping the previous one, if any.
    void start();
    void stop();

    [[nodiscard]] std::uint16_t port() const { return running->server().port(); }
    void passTime(std::chrono::milliseconds time) { now += time.count(); }

    /// Sends a request on a new connection.
    [[nodiscard]] RawClient::Answer exchange(const std::string& request) const;
    [[nodiscard]] RawClient::Answer call(const std::string& method, const std::string& path,
        const std::string& headers = {}, const std::string& host = "127.0.0.1") const
    {
        return exchange(method + " " + path + " HTTP/1.1\r\nHost: " + host + "\r\n" + headers +
                        "Content-Length: 0\r\n\r\n");
    }
    [[nodiscard]] RawClient::Answer get(const std::string& path) const { return exchange(getRequest(path)); }
    [[nodiscard]] RawClient::Answer post(const std::string& path, const emulator::Json& body) const
    {
        return exchange(postRequest(path, body.dump()));
    }

    /// Gets a token for the user "shop" for the calls below.
    void takeToken();
    [[nodiscard]] std::string tokenHeader() const { return "Token: " + currentToken + "\r\n"; }
    [[nodiscard]] RawClient::Answer sell(const emulator::Json& body) const;
    [[nodiscard]] RawClient::Answer report(const std::string& uuid) const;

    emulator::Options options;

private:
    std::unique_ptr<emulator::Emulator> running;
    std::thread thread;
    std::atomic<std::int64_t> now;
    std::string currentToken;
};
