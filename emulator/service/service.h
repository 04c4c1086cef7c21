#pragma once

#include "emulator/faults/faultbox.h"
#include "emulator/http/answer.h"
#include "emulator/protocol/call.h"
#include "emulator/protocol/errors.h"
#include "emulator/service/pace.h"
#include "emulator/service/serviceoptions.h"
#include "emulator/store/store.h"
#include "emulator/values/moscowtime.h"

#include <functional>
#include <optional>
#include <string>

namespace emulator {

/// The cloud service without a network: a call in, an answer out. For one thread.
class Service
{
public:
    /// `store` and `faults` are borrowed and must outlive the service. Makes the registers of every group.
    Service(const ServiceOptions& serviceOptions, Store& usedStore, FaultBox& usedFaults,
        Clock usedClock = systemTime);

    /// Where the links to receipts lead, `http://127.0.0.1:PORT/`.
    void setAddress(const std::string& newAddress) { address = newAddress; }

    /// Told of every call once its answer is settled; the exchange holds no secrets.
    void setListener(std::function<void(const Exchange&)> newListener) { listener = std::move(newListener); }

    [[nodiscard]] Answer answer(const Request& request);

    /// The honest status answer of a document, without counting as a question.
    [[nodiscard]] Reply statusOf(const Document& document) const;

    /// `wait`, `done` or `fail`, likewise.
    [[nodiscard]] std::string statusWord(const Document& document) const;

private:
    /// A call with what the store knows of it.
    struct Context
    {
        Call call{};
        std::optional<Token> token{};
        std::optional<Document> document{};
        const Fault* fault = nullptr;
    };

    Context look(const Request& request);
    /// What the fault of the context makes of the call; a fault that makes no difference is taken out of it.
    Answer sabotage(Context& context, const Request& request);
    Reply perform(const Context& context, const Request& request);
    Reply giveToken(const Context& context);
    Reply takeDocument(const Context& context);
    Reply report(const Context& context);
    void record(const Context& context, const Request& request, const Answer& answer);

    /// The code that bars the call, if any.
    [[nodiscard]] std::optional<ErrorCode> refusal(const Context& context) const;
    [[nodiscard]] std::string wrongFields(const Call& call, const Group& group) const;
    Document newDocument(const Context& context, const Group& group);
    /// Gives the document its time and its fiscal data, or the failure that it comes to.
    void fiscalise(Document& document, const Group& group, const Fault* fault);
    [[nodiscard]] const Group* findGroup(const std::string& code) const;
    [[nodiscard]] const User* findUser(const std::string& login) const;
    [[nodiscard]] Reply error(Endpoint endpoint, ErrorCode code, const std::string& details = {}) const;
    [[nodiscard]] std::chrono::milliseconds someLatency() const;

    ServiceOptions options;
    Store& store;
    FaultBox& faults;
    Clock clock;
    Pace pace;
    std::string address;
    std::function<void(const Exchange&)> listener;
};

} // namespace emulator
