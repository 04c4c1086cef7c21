#pragma once

#include "emulator/values/json.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// An HTTP client on a plain socket, which shows exactly what is on the wire.
class RawClient
{
public:
    /// Connects from an address of this machine.
    explicit RawClient(std::uint16_t port, const char* from = "127.0.0.1");
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void send(const std::string& bytes) const;

    /// What has become of the connection.
    enum class End
    {
        Open,
        Closed,
        Reset
    };

    struct Answer
    {
        int status = 0;
        std::string head{};
        std::string body{};
        End end = End::Open;
        [[nodiscard]] emulator::Json json() const { return emulator::Json::parse(body); }
    };

    /// Reads one answer of the length that it declares, or in chunks. Throws if it does not arrive.
    [[nodiscard]] Answer receive();

    /// Reads until the connection ends or nothing has arrived for `patience`.
    [[nodiscard]] Answer receiveAll(std::chrono::milliseconds patience = std::chrono::seconds(20));

    /// Reads until `before` and then `after` have arrived; returns the text between them.
    [[nodiscard]] std::string receiveUntil(const std::string& before, const std::string& after);

private:
    /// Reads the available bytes into the buffer.
    End readSome(std::chrono::milliseconds patience);

    /// The length of the body in the buffer after the head; nothing if it has not arrived as a whole.
    [[nodiscard]] std::optional<std::size_t> takeBody(Answer& answer) const;

    int handle = -1;
    std::string buffer;
};

/// A request with a JSON body. Each line of `headers` ends in CRLF.
[[nodiscard]] std::string postRequest(
    const std::string& path, const std::string& body, const std::string& headers = {});
[[nodiscard]] std::string getRequest(const std::string& path, const std::string& headers = {});
