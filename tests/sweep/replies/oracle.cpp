#include "tests/sweep/replies/oracle.h"

#include <algorithm>
#include <cmath>
#include <optional>

using nlohmann::json;

namespace {

// So many answers in a row have to agree before a receipt counts as refused.
constexpr std::size_t fewestRefusals = 3;
constexpr std::size_t fewestFailures = 4;

json at(const json& object, const char* key)
{
    return object.is_object() && object.contains(key) ? object[key] : json();
}

// JSON has one kind of number: 5.0 is 5.
bool isInteger(const json& value, std::int64_t least, std::int64_t greatest)
{
    if (!value.is_number())
        return false;
    const auto number = value.get<double>();
    return std::trunc(number) == number && number >= static_cast<double>(least) &&
           number <= static_cast<double>(greatest);
}

bool isSum(const json& value, double sum)
{
    return value.is_number() && std::abs(value.get<double>() - sum) < 0.005;
}

bool hasText(const json& value)
{
    return value.is_string() && !value.get<std::string>().empty();
}

std::vector<json> answersTo(Call call, const std::vector<GivenReply>& replies)
{
    std::vector<json> answers;
    for (const GivenReply& given : replies) {
        if (given.call == call)
            answers.push_back(given.reply.json());
    }
    return answers;
}

json last(const std::vector<json>& answers)
{
    return answers.empty() ? json() : answers.back();
}

// Nothing, or an error in which nothing is said.
bool hasNoError(const json& answer)
{
    const json error = at(answer, "error");
    return error.is_null() || error == json::object();
}

bool saysDone(const json& report)
{
    return at(report, "status") == "done";
}

bool isOfTheReceipt(const json& report, const json& uuid)
{
    return at(report, "external_id") == honest::id && hasText(uuid) && at(report, "uuid") == uuid;
}

bool isStorage(const json& value)
{
    if (!value.is_string())
        return false;
    const auto digits = value.get<std::string>();
    return digits.size() == 16 && digits.find_first_not_of("0123456789") == std::string::npos;
}

bool hasFiscalData(const json& payload)
{
    return at(payload, "total").is_number() && isStorage(at(payload, "fn_number")) &&
           isInteger(at(payload, "fiscal_document_number"), 1, INT32_MAX) &&
           isInteger(at(payload, "fiscal_document_attribute"), 1, UINT32_MAX);
}

bool proves(const json& report, const json& uuid)
{
    const json payload = at(report, "payload");
    return saysDone(report) && hasNoError(report) && isOfTheReceipt(report, uuid) && hasFiscalData(payload) &&
           isSum(at(payload, "total"), honest::total);
}

// The id belongs to a receipt with another total, whose registration is as well proved.
bool provesAnother(const json& report, const json& uuid)
{
    return saysDone(report) && isOfTheReceipt(report, uuid) &&
           at(at(report, "payload"), "total").is_number() &&
           !isSum(at(at(report, "payload"), "total"), honest::total);
}

// Whether an answer about the receipt says that it is not registered and will not be.
bool refuses(const GivenReply& given)
{
    const json answer = given.reply.json();
    if (given.call == Call::Report)
        return at(answer, "status") == "fail";
    // An unknown error, a document that exists or is in progress, an error of the server.
    constexpr int leaveItOpen[] = {0, 33, 34, 50};
    const json code = at(at(answer, "error"), "code");
    return isInteger(code, 0, INT32_MAX) && std::ranges::count(leaveItOpen, code.get<int>()) == 0;
}

// Whether the answers to the last kind of question about the receipt agreed often enough.
bool isRefused(const std::vector<GivenReply>& replies)
{
    std::optional<Call> last;
    std::size_t count = 0;
    for (auto given = replies.rbegin(); given != replies.rend(); ++given) {
        if (given->call == Call::Token)
            continue;
        if (given->call != last.value_or(given->call) || !refuses(*given))
            break;
        last = given->call;
        ++count;
    }
    return count >= (last == Call::Report ? fewestFailures : fewestRefusals);
}

struct Told
{
    const char* key;
    const char* inPayload;
};

constexpr Told told[] = {
    {"fnNumber", "fn_number"},
    {"fiscalDocumentNumber", "fiscal_document_number"},
    {"fiscalSign", "fiscal_document_attribute"},
    {"registrationNumber", "ecr_registration_number"},
    {"shiftNumber", "shift_number"},
    {"total", "total"},
};

std::string textOf(const json& value)
{
    if (value.is_number_float() && isInteger(value, 0, UINT32_MAX))
        return std::to_string(value.get<std::int64_t>());
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::optional<std::string> inventedFiscalData(const json& line, const json& payload)
{
    const json fiscal = at(line, "fiscal");
    for (const Told& pair : told) {
        const json said = at(fiscal, pair.key);
        const json given = at(payload, pair.inPayload);
        const bool isSame = given.is_number() && said.is_number() ? isSum(said, given.get<double>())
                                                                  : textOf(said) == textOf(given);
        if (!said.is_null() && !isSame)
            return std::string(pair.key) + " is " + said.dump() + " instead of " + given.dump();
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> contradictions(const json& line, const std::vector<GivenReply>& replies)
{
    std::vector<std::string> wrong;
    const auto require = [&](bool holds, const std::string& otherwise) {
        if (!holds)
            wrong.push_back(otherwise);
    };
    const auto sells = answersTo(Call::Sell, replies);
    const auto reports = answersTo(Call::Report, replies);
    const json uuid = at(last(sells), "uuid");
    const json outcome = at(line, "outcome");
    const json message = at(at(line, "error"), "message");

    if (outcome == "registered")
        require(proves(last(reports), uuid), "registered, but the last answer does not prove it");
    else if (outcome == "incomplete")
        require(
            saysDone(last(reports)), "incomplete, but the last answer does not say that it is registered");
    else if (outcome == "refused" && !sells.empty() && !provesAnother(last(reports), uuid))
        require(isRefused(replies), "refused on too few voices");
    else if (outcome.is_null())
        require(
            hasText(uuid) && at(line, "uuid") == uuid, "accepted, but the answer does not have this uuid");
    if (outcome != "registered")
        require(!proves(last(reports), uuid), "not called registered, although the last answer proves it");
    if (const auto invented = inventedFiscalData(line, at(last(reports), "payload")))
        wrong.push_back(*invented);
    if (message.is_string() && message.get<std::string>().starts_with("Not sent"))
        require(sells.empty(), "not sent, but it was");
    return wrong;
}
