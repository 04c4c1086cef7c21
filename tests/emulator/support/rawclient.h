#pragma once

#include "emulator/values/json.h"

#include <chrono>
#include <cstdint>
#include <string>

/// A client that speaks over a plain socket, so that what is on the wire is seen as it is.
class RawClient
{
public:
    explicit RawClient(std::uint16_t port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void send(const std::string& bytes) const;

    /// How a connection came to its end.
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

    /// Reads one answer as far as its Content-Length, or as far as the connection goes.
    [[nodiscard]] Answer receive();

    /// Everything until the connection ends, or until nothing has come for `patience`.
    [[nodiscard]] Answer receiveAll(std::chrono::milliseconds patience = std::chrono::seconds(20));

    /// Reads on until `before` and, behind it, `after` have come; what is between them.
    [[nodiscard]] std::string receiveUntil(const std::string& before, const std::string& after);

private:
    /// Reads what is there into the buffer; what happened to the connection.
    End readSome(std::chrono::milliseconds patience);

    int handle = -1;
    std::string buffer;
};

/// Text of a request with a body of JSON; `headers` are whole lines that end in CRLF.
[[nodiscard]] std::string postRequest(
    const std::string& path, const std::string& body, const std::string& headers = {});
[[nodiscard]] std::string getRequest(const std::string& path, const std::string& headers = {});
