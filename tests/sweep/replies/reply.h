#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

/// The calls of a sale.
enum class Call
{
    Token,
    Sell,
    Report,
};

/// One answer of a service.
struct Reply
{
    /// Whether the connection is closed instead.
    bool isLost = false;
    int status = 200;
    std::string body = {};

    /// The body as JSON; a discarded value when it is none or no answer came.
    [[nodiscard]] nlohmann::json json() const;
};

/// The answers of a service to each call, in order; then it falls silent.
struct Script
{
    std::vector<Reply> token;
    std::vector<Reply> sell;
    std::vector<Reply> report;
};

/// A reply that was given.
struct GivenReply
{
    Call call;
    Reply reply;
};

/// What an honest service answers about the receipt of these tests, which it registers.
namespace honest {

inline constexpr auto id = "till-7-000123";
inline constexpr auto uuid = "4355e7ab-6ee0-4f43-a5c3-5e4c2a0a1c9e";
inline constexpr double total = 160;

[[nodiscard]] nlohmann::json token();
[[nodiscard]] nlohmann::json accepted();
[[nodiscard]] nlohmann::json known();
[[nodiscard]] nlohmann::json refused(int code);
[[nodiscard]] nlohmann::json waiting();
[[nodiscard]] nlohmann::json done();
[[nodiscard]] nlohmann::json failed(int code);

} // namespace honest

[[nodiscard]] Reply replyOf(const nlohmann::json& answer);

void showValue(const Script& script, std::ostream& out);
