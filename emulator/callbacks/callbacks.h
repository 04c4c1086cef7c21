#pragma once

#include "emulator/callbacks/callbacklimits.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

#include <functional>
#include <memory>

namespace boost::asio {
class io_context;
} // namespace boost::asio

namespace emulator {

/// Posts the status answer of every document to its `callback_url` once it is done or has failed. Calls
/// programs on this machine only, each once, and records every call as an exchange.
class Callbacks
{
public:
    /// Store and service are borrowed; `io` runs the calls, and the callbacks must not outlive it. Documents
    /// of the store that are not finished yet are called as well.
    Callbacks(
        Store& store, const Service& service, boost::asio::io_context& io, const CallbackLimits& limits);
    ~Callbacks();
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;

    /// Called with every recorded callback.
    void setListener(std::function<void(const Exchange&)> listener);

    /// Looks whether the exchange has created a document or let one finish.
    void notice(const Exchange& exchange);

    /// Gives up the callbacks that are still to come, as all documents have been deleted.
    void forget();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation;
};

} // namespace emulator
