#include "emulator/emulator.h"

#include "emulator/http/guard.h"
#include "emulator/page/pagefiles.h"
#include "emulator/protocol/replies.h"

#include <algorithm>
#include <exception>

namespace emulator {

namespace {

// The page loads nothing from other sites and runs only its own scripts.
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

// Reads the recording before anything is created.
Emulator::Emulator(const Options& options, Clock usedClock)
    : Emulator(options, options.replay.empty() ? std::nullopt : std::optional(readRecording(options.replay)),
          std::move(usedClock))
{
}

Emulator::Emulator(const Options& options, const std::optional<Recording>& recording, Clock usedClock)
    : allowedHosts(options.allowedHosts)
    , clock(usedClock)
    , store(options.database, options.keep)
    , service(options.service, store, faults, usedClock)
    , replay(recording ? std::optional<Replay>(std::in_place, *recording, store, clock) : std::nullopt)
    , api(store, faults, service)
    , httpServer(
          options.port, [this](const Request& request) { return answer(request); }, options.limits,
          options.tls)
    , root((options.tls.certificateChain.empty() ? "http://127.0.0.1:" : "https://127.0.0.1:") +
           std::to_string(httpServer.port()) + "/")
{
    faults.add(options.faults);
    api.setReplaying(replay.has_value());
    service.setAddress(root);
    service.setListener([this](const Exchange& exchange) { noticeExchange(exchange); });
    if (replay)
        replay->setListener([this](const Exchange& exchange) { publishExchange(exchange); });
    if (options.callbacks) {
        callbacks = std::make_unique<Callbacks>(store, service, httpServer.context(), *options.callbacks);
        callbacks->setListener([this](const Exchange& exchange) { publishExchange(exchange); });
    }
    api.setListener([this](const Json& event) {
        if (callbacks && event["kind"] == "cleared")
            callbacks->forget();
        httpServer.publish(toLine(event));
    });
}

std::string Emulator::url() const
{
    return root + std::string(basePath.substr(1));
}

Answer Emulator::answer(const Request& request)
{
    const PageFile* file = findPage(request);
    const std::string reason = rejectionReason(request, allowedHosts, file != nullptr);
    if (!reason.empty())
        return {.reply = {.status = 403, .contentType = "text/plain; charset=utf-8", .body = reason + "\n"}};
    if (file != nullptr)
        return {.reply = {.contentType = std::string(file->contentType),
                    .body = std::string(file->body),
                    .headers = pageHeaders}};
    try {
        if (request.path.starts_with(apiPath))
            return api.answer(request);
        return replay ? replay->answer(request) : service.answer(request);
    } catch (const std::exception& failure) {
        const ServiceError& internal = serviceError(ErrorCode::Internal);
        const std::string text = std::string(internal.text) + ": " + failure.what();
        return {.reply = errorReply(Endpoint::Unknown, internal, clock(), text)};
    }
}

void Emulator::noticeExchange(const Exchange& exchange)
{
    if (callbacks)
        callbacks->notice(exchange);
    publishExchange(exchange);
}

void Emulator::publishExchange(const Exchange& exchange)
{
    if (!httpServer.followed())
        return;
    Json event{{"kind", "call"}, {"endpoint", nameOf(exchange.endpoint)}, {"group", exchange.groupCode},
        {"external_id", exchange.externalId}, {"status", exchange.status}, {"fault", exchange.fault}};
    if (exchange.code)
        event["code"] = *exchange.code;
    if (const auto document = store.findDocument(exchange.uuid))
        event["document"] = api.summary(*document);
    httpServer.publish(toLine(event));
}

} // namespace emulator
