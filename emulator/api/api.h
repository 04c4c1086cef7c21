#pragma once

#include "emulator/faults/faultbox.h"
#include "emulator/http/answer.h"
#include "emulator/http/http.h"
#include "emulator/service/service.h"
#include "emulator/store/store.h"

#include <functional>
#include <string>
#include <string_view>

namespace emulator {

/// The path prefix of every call to the emulator's own API.
inline constexpr std::string_view apiPath = "/_emulator/";

/// The API through which tests and the page inspect and control the emulator. Constructor arguments are
/// borrowed.
class Api
{
public:
    Api(Store& usedStore, FaultBox& usedFaults, const Service& usedService)
        : store(usedStore)
        , faultBox(usedFaults)
        , service(usedService)
    {
    }

    /// Called when a call has changed faults or documents.
    void setListener(std::function<void(const Json&)> newListener) { listener = std::move(newListener); }

    /// Whether a recording answers instead of the service.
    void setReplaying(bool nowReplaying) { replaying = nowReplaying; }

    [[nodiscard]] Answer answer(const Request& request);

    /// A document as it appears in lists.
    [[nodiscard]] Json summary(const Document& document) const;

private:
    Reply documents(const Request& request) const;
    Reply document(const std::string& uuid) const;
    Reply documentPart(const Request& request, const std::string& uuid, const std::string& part) const;
    Reply clearDocuments();
    Reply refusal(const std::string& id) const;
    Reply exchanges(const Request& request) const;
    Reply faults() const;
    Reply addFaults(const std::string& body);
    Reply clearFaults();
    Reply removeFault(const std::string& id);
    Reply route(const Request& request);
    void notify(const char* kind) const;

    Store& store;
    FaultBox& faultBox;
    const Service& service;
    bool replaying = false;
    std::function<void(const Json&)> listener;
};

} // namespace emulator
