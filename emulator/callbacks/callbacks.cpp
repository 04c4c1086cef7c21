#include "emulator/callbacks/callbacks.h"

#include "emulator/callbacks/poster.h"
#include "emulator/protocol/mask.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <map>
#include <set>

namespace emulator {

class Callbacks::Implementation
{
public:
    Implementation(Store& usedStore, const Service& usedService, boost::asio::io_context& usedIo,
        const CallbackLimits& callbackLimits)
        : store(usedStore)
        , service(usedService)
        , io(usedIo)
        , limits(callbackLimits)
        , timer(usedIo)
    {
        for (const Document& newest : store.documents({.limit = 1}))
            newestSequence = newest.sequence;
        const int most = static_cast<int>(limits.waiting);
        for (const Document& document :
            store.documents({.status = "wait", .now = service.now(), .limit = most}))
            schedule(document);
    }

    void notice(const Exchange& exchange)
    {
        if (exchange.endpoint == Endpoint::Report && unasked.erase(exchange.uuid) > 0) {
            times.emplace(service.now(), exchange.uuid);
            setTimer();
        }
        if (exchange.endpoint != Endpoint::Sell || exchange.uuid.empty())
            return;
        const auto document = store.findDocument(exchange.uuid);
        // A repeated call has the uuid of the first one.
        if (!document || document->sequence <= newestSequence)
            return;
        newestSequence = document->sequence;
        schedule(*document);
    }

    std::function<void(const Exchange&)> listener;

private:
    void schedule(const Document& document)
    {
        if (document.callbackUrl.empty() || document.outcome == Outcome::Never)
            return;
        if (times.size() + unasked.size() >= limits.waiting) {
            record(document, {.failure = "not called: too many callbacks are still to come"});
            return;
        }
        times.emplace(document.readyAt, document.uuid);
        setTimer();
    }

    // The timer runs out in a later round, so an answer that is being sent now precedes the call.
    void setTimer()
    {
        if (times.empty() || underWay >= limits.underWay)
            return;
        const auto left = times.begin()->first - service.now();
        timer.expires_after(std::max(left, std::chrono::milliseconds(0)));
        timer.async_wait([this](const boost::system::error_code& error) {
            if (!error)
                callFinished();
        });
    }

    void callFinished()
    {
        while (!times.empty() && underWay < limits.underWay && times.begin()->first <= service.now()) {
            const std::string uuid = times.begin()->second;
            times.erase(times.begin());
            const auto document = store.findDocument(uuid);
            if (!document)
                continue;
            if (service.statusWord(*document) == "wait")
                unasked.insert(uuid); // the status answers that say "not yet" have to be asked for first
            else
                call(*document);
        }
        setTimer();
    }

    void call(const Document& document)
    {
        const auto url = loopbackUrl(document.callbackUrl);
        if (!url) {
            record(document, {.failure = "not called: callback_url is not an http address of this machine"});
            return;
        }
        ++underWay;
        boost::asio::co_spawn(io, deliver(document, *url), boost::asio::detached);
    }

    boost::asio::awaitable<void> deliver(Document document, LoopbackUrl url)
    {
        std::string body = service.statusOf(document).body;
        const Delivery delivery = co_await post(std::move(url), std::move(body), limits.patience);
        record(document, delivery);
        --underWay;
        setTimer();
    }

    void record(const Document& document, const Delivery& delivery)
    {
        const Call call{.body = Json::object()};
        Exchange exchange{.at = service.now(),
            .endpoint = Endpoint::Callback,
            .groupCode = document.groupCode,
            .externalId = document.externalId,
            .uuid = document.uuid,
            .login = document.login,
            .request =
                delivery.request.empty() ? std::string() : maskedRequest({.raw = delivery.request}, call),
            .answer = delivery.answer,
            .status = delivery.status,
            .fault = delivery.failure};
        store.addExchange(exchange);
        if (listener)
            listener(exchange);
    }

    Store& store;
    const Service& service;
    boost::asio::io_context& io;
    CallbackLimits limits;
    boost::asio::steady_timer timer;
    std::int64_t newestSequence = 0;
    std::size_t underWay = 0;
    // Uuids of the documents to be called, by the time at which they are finished.
    std::multimap<TimePoint, std::string> times;
    // Those that a register has finished, but of which status answers still say "not yet".
    std::set<std::string> unasked;
};

Callbacks::Callbacks(
    Store& store, const Service& service, boost::asio::io_context& io, const CallbackLimits& limits)
    : implementation(std::make_unique<Implementation>(store, service, io, limits))
{
}

Callbacks::~Callbacks() = default;

void Callbacks::setListener(std::function<void(const Exchange&)> listener)
{
    implementation->listener = std::move(listener);
}

void Callbacks::notice(const Exchange& exchange)
{
    implementation->notice(exchange);
}

} // namespace emulator
