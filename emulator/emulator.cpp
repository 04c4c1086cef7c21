#include "emulator/emulator.h"

#include "emulator/http/guard.h"
#include "emulator/page/pagefiles.h"
#include "emulator/protocol/replies.h"

#include <algorithm>
#include <exception>

namespace emulator {

namespace {

// The page loads nothing from elsewhere and runs no script but its own.
constexpr auto pageHeaders =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self' data:; connect-src 'self'; base-uri 'none'; form-action 'none'; "
    "frame-ancestors 'none'\r\nX-Content-Type-Options: nosniff\r\nCache-Control: no-cache\r\n";

const PageFile* findPage(const Request& request)
{
    const std::string path = request.path == "/" ? "/index.html" : request.path;
    const auto files = pageFiles();
    const auto found = std::ranges::find(files, path, &PageFile::path);
    return request.method != "GET" || found == files.end() ? nullptr : &*found;
}

} // namespace

Emulator::Emulator(const Options& options, Clock clock)
    : allowedHosts_(options.allowedHosts)
    , clock_(clock)
    , store_(options.database, options.keep)
    , service_(options.service, store_, faults_, std::move(clock))
    , api_(store_, faults_, service_)
    , server_(
          options.port, [this](const Request& request) { return answer(request); }, options.limits,
          options.tls)
    , root_((options.tls.certificateChain.empty() ? "http://127.0.0.1:" : "https://127.0.0.1:") +
            std::to_string(server_.port()) + "/")
{
    for (const Fault& fault : options.faults)
        faults_.add(fault);
    service_.setAddress(root_);
    service_.setListener([this](const Exchange& exchange) { tellOf(exchange); });
    api_.setListener([this](const Json& event) { server_.publish(toLine(event)); });
}

std::string Emulator::url() const
{
    return root_ + std::string(basePath.substr(1));
}

Answer Emulator::answer(const Request& request)
{
    const PageFile* file = findPage(request);
    const std::string reason = foreignness(request, allowedHosts_, file != nullptr);
    if (!reason.empty())
        return {.reply = {.status = 403, .contentType = "text/plain; charset=utf-8", .body = reason + "\n"}};
    if (file != nullptr)
        return {.reply = {.contentType = std::string(file->contentType),
                    .body = std::string(file->body),
                    .headers = pageHeaders}};
    try {
        return request.path.starts_with(apiPath) ? api_.answer(request) : service_.answer(request);
    } catch (const std::exception& failure) {
        return {.reply = errorReply(
                    Endpoint::Unknown, serviceError(ErrorCode::Internal), clock_(), failure.what())};
    }
}

void Emulator::tellOf(const Exchange& exchange)
{
    if (!server_.followed())
        return;
    Json event{{"kind", "call"}, {"endpoint", nameOf(exchange.endpoint)}, {"group", exchange.groupCode},
        {"external_id", exchange.externalId}, {"status", exchange.status}, {"fault", exchange.fault}};
    if (exchange.code)
        event["code"] = *exchange.code;
    if (const auto document = store_.findDocument(exchange.uuid))
        event["document"] = api_.summary(*document);
    server_.publish(toLine(event));
}

} // namespace emulator
