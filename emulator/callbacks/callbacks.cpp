#include "emulator/callbacks/callbacks.h"

#include "emulator/callbacks/poster.h"
#include "emulator/protocol/mask.h"
#include "emulator/service/record.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <algorithm>
#include <exception>
#include <iostream>
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

    void forget()
    {
        times.clear();
        unasked.clear();
    }

    std::function<void(const Exchange&)> listener;

private:
    void schedule(const Document& document)
    {
        if (document.callbackUrl.empty() || document.outcome == Outcome::Never)
            return;
        if (isFull())
            forgetDeleted(document);
        if (isFull()) {
            record(document, {.failure = "not called: too many callbacks are still to come"});
            return;
        }
        times.emplace(document.readyAt, document.uuid);
        setTimer();
    }

    [[nodiscard]] bool isFull() const { return times.size() + unasked.size() >= limits.waiting; }

    // Looks up every document, so it has to be rare even if it finds none that are deleted.
    void forgetDeleted(const Document& newest)
    {
        if (newest.sequence < nextPurge)
            return;
        nextPurge = newest.sequence + static_cast<std::int64_t>(limits.waiting / 10);
        const auto isDeleted = [this](const std::string& uuid) { return !store.findDocument(uuid); };
        std::erase_if(unasked, isDeleted);
        std::erase_if(times, [&](const auto& entry) { return isDeleted(entry.second); });
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
            guarded([&] { callIfReady(uuid); });
        }
        setTimer();
    }

    void callIfReady(const std::string& uuid)
    {
        const auto document = store.findDocument(uuid);
        if (!document)
            return;
        if (service.statusWord(*document) == "wait")
            unasked.insert(uuid); // the status answers that say "not yet" have to be asked for first
        else
            call(*document);
    }

    // An exception of the store, whose disk may be full, would end the whole emulator.
    void guarded(const std::function<void()>& action) const
    {
        try {
            action();
        } catch (const std::exception& error) {
            std::cerr << "fremulator: a callback was lost: " << error.what() << '\n';
        }
    }

    void call(const Document& document)
    {
        const auto url = loopbackUrl(document.callbackUrl);
        if (!url) {
            const bool isLong = document.callbackUrl.size() > longestUrl;
            record(document,
                {.failure = isLong ? "not called: callback_url has over " + std::to_string(longestUrl) +
                                         " characters"
                                   : "not called: callback_url is not an http address of this machine"});
            return;
        }
        ++underWay;
        boost::asio::co_spawn(io, deliver(document, *url), boost::asio::detached);
    }

    boost::asio::awaitable<void> deliver(Document document, LoopbackUrl url)
    {
        Delivery delivery;
        try {
            std::string body = service.statusOf(document).body;
            delivery = co_await post(std::move(url), std::move(body), limits.patience);
        } catch (const std::exception& error) {
            delivery.failure = std::string("not called: ") + error.what();
        }
        --underWay;
        guarded([&] { record(document, delivery); });
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
            .request = delivery.request.empty() ? std::string()
                                                : truncated(maskedRequest({.raw = delivery.request}, call)),
            .answer = truncated(delivery.answer),
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
    std::int64_t nextPurge = 0;
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

void Callbacks::forget()
{
    implementation->forget();
}

void Callbacks::notice(const Exchange& exchange)
{
    implementation->notice(exchange);
}

} // namespace emulator
