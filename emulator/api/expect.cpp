#include "emulator/api/expect.h"

#include "emulator/api/query.h"
#include "emulator/values/jsonreader.h"
#include "emulator/values/money.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <limits>
#include <optional>

namespace emulator {

namespace {

template <class Number>
std::optional<Number> numberIn(const Request& request, const char* key)
{
    const std::string text = request.parameter(key);
    if (text.empty())
        return std::nullopt;
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        throw JsonError(std::string(key) + " must be a number, not " + text);
    return value;
}

constexpr std::array parameters{
    "group", "external_id", "operation", "text", "count", "total", "status", "wire_requests"};

// An empty value usually comes from an unset shell variable. Taken to mean "any", it would let a test pass
// that checks nothing.
void rejectBadParameters(const Request& request)
{
    rejectUnknownParameters(request, parameters);
    for (const auto& [name, value] : request.query) {
        if (value.empty())
            throw JsonError(name + " is empty; leave it out to accept any value");
        if (std::ranges::count(request.query, name, &std::pair<std::string, std::string>::first) > 1)
            throw JsonError(name + " is given twice");
    }
    if (!request.parameter("text").empty() && !request.parameter("wire_requests").empty())
        throw JsonError(
            "wire_requests cannot be combined with text: calls that registered nothing left no text");
}

std::string statusIn(const Request& request)
{
    constexpr std::array words{"wait", "done", "fail"};
    const std::string status = request.parameter("status");
    if (!status.empty() && std::ranges::find(words, status) == words.end())
        throw JsonError("status must be one of " + joined(words));
    return status;
}

std::string money(std::int64_t kopecks)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2f", roubles(kopecks));
    return text.data();
}

class Verifier
{
public:
    void demand(bool condition, const std::string& complaint)
    {
        if (!condition)
            complaints += (complaints.empty() ? "" : "; ") + complaint;
    }

    [[nodiscard]] Verdict verdict(const std::string& success) const
    {
        return complaints.empty() ? Verdict{true, success} : Verdict{false, complaints};
    }

private:
    std::string complaints;
};

void verifyTotals(Verifier& verifier, const std::vector<Document>& documents, double total)
{
    const auto kopecks = wholeParts(total, 100);
    if (!kopecks)
        throw JsonError("total must have at most two decimals");
    for (const Document& document : documents)
        verifier.demand(document.totalKopecks == *kopecks, "total of " + document.externalId + " is " +
                                                               money(document.totalKopecks) + ", not " +
                                                               money(*kopecks));
}

void verifyWireRequests(Verifier& verifier, Store& store, const Request& request, std::int64_t wanted)
{
    const auto counts = store.wireCounts(
        request.parameter("group"), request.parameter("external_id"), request.parameter("operation"));
    verifier.demand(wanted == 0 || !counts.empty(), "requests: 0, not " + std::to_string(wanted));
    for (const WireCount& count : counts)
        verifier.demand(count.requests == wanted, "requests for " + count.externalId + ": " +
                                                      std::to_string(count.requests) + ", not " +
                                                      std::to_string(wanted));
}

} // namespace

Verdict expect(const Request& request, Store& store, const Service& service)
{
    rejectBadParameters(request);
    const std::vector<Document> documents = store.documents({.group = request.parameter("group"),
        .externalId = request.parameter("external_id"),
        .operation = request.parameter("operation"),
        .text = request.parameter("text"),
        .limit = std::numeric_limits<int>::max()});
    const auto found = static_cast<std::int64_t>(documents.size());
    const std::int64_t count = numberIn<std::int64_t>(request, "count").value_or(1);

    Verifier verifier;
    verifier.demand(found == count, "receipts: " + std::to_string(found) + ", not " + std::to_string(count));
    if (const auto total = numberIn<double>(request, "total"))
        verifyTotals(verifier, documents, *total);
    if (const std::string status = statusIn(request); !status.empty()) {
        for (const Document& document : documents) {
            const std::string is = service.statusWord(document);
            verifier.demand(
                is == status, "status of " + document.externalId + " is " + is + ", not " + status);
        }
    }
    if (const auto requests = numberIn<std::int64_t>(request, "wire_requests"))
        verifyWireRequests(verifier, store, request, *requests);
    return verifier.verdict("receipts: " + std::to_string(found) + ", all as expected");
}

} // namespace emulator
