#pragma once

#include "emulator/faults/faultbox.h"
#include "emulator/http/answer.h"
#include "emulator/protocol/call.h"
#include "emulator/protocol/errors.h"
#include "emulator/rules/latefailure.h"
#include "emulator/rules/receiptcheck.h"
#include "emulator/service/pace.h"
#include "emulator/service/serviceoptions.h"
#include "emulator/store/store.h"
#include "emulator/values/moscowtime.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

/// The cloud service without a network: takes a request, returns the answer. For one thread.
class Service
{
public:
    /// Store and faults are borrowed and must outlive the service. Creates the registers of every group.
    Service(const ServiceOptions& serviceOptions, Store& usedStore, FaultBox& usedFaults,
        Clock usedClock = systemTime);

    /// The address that links to receipts begin with, `http://127.0.0.1:PORT/`.
    void setAddress(const std::string& newAddress) { address = newAddress; }

    /// Called with every recorded exchange, before it is committed; it contains no secrets.
    void setListener(std::function<void(const Exchange&)> newListener) { listener = std::move(newListener); }

    [[nodiscard]] Answer answer(const Request& request);

    /// The status answer for a document, unaffected by faults and without counting as a status call.
    [[nodiscard]] Reply statusOf(const Document& document) const;

    /// `wait`, `done` or `fail`.
    [[nodiscard]] std::string statusWord(const Document& document) const;

    /// Objects with `field` and `rule`: why a document failed that the register call had accepted. Empty if
    /// it did not, or not because of its body.
    [[nodiscard]] Json fieldsToBlame(const Document& document) const;

    [[nodiscard]] const ServiceOptions& settings() const { return options; }
    [[nodiscard]] const ReceiptCheck& rules() const { return check; }
    [[nodiscard]] TimePoint now() const { return clock(); }

private:
    /// A call and what belongs to it.
    struct Context
    {
        Call call{};
        std::optional<Token> token{};
        std::optional<Document> document{};
        const Fault* fault = nullptr;
    };

    Context contextOf(const Request& request);
    /// Removes the fault from the context if it makes no difference to the call.
    Answer performWithFault(Context& context, const Request& request);
    Reply perform(const Context& context, const Request& request);
    Reply issueToken(const Context& context);
    Reply acceptDocument(const Context& context);
    Reply report(const Context& context);
    void record(const Context& context, const Request& request, const Answer& answer);

    /// The error code if token, user or group do not permit the call.
    [[nodiscard]] std::optional<ErrorCode> refusal(const Context& context) const;
    /// Keeps a register call whose id has no document as a refusal.
    void noteRefusal(const Call& call, const Exchange& exchange);
    [[nodiscard]] std::vector<Violation> wrongFields(const Call& call, const Group& group) const;
    Document newDocument(const Context& context, const Group& group);
    /// Sets when the document is ready and its fiscal data or its error. `late` is what the service finds out
    /// only now.
    void fiscalise(
        Document& document, const Group& group, const Fault* fault, const std::optional<LateFailure>& late);
    [[nodiscard]] const Group* findGroup(const std::string& code) const;
    [[nodiscard]] const User* findUser(const std::string& login) const;
    [[nodiscard]] Reply error(Endpoint endpoint, ErrorCode code, const std::string& text = {}) const;
    [[nodiscard]] std::chrono::milliseconds randomLatency() const;

    ServiceOptions options;
    ReceiptCheck check;
    Store& store;
    FaultBox& faults;
    Clock clock;
    Pace pace;
    std::string address;
    std::function<void(const Exchange&)> listener;
};

} // namespace emulator
