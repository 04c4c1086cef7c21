#pragma once

#include "emulator/call.h"
#include "emulator/http.h"
#include "emulator/moscowtime.h"
#include "emulator/options.h"
#include "emulator/store.h"

#include <optional>
#include <string>

namespace emulator {

/// The cloud service without a network: a call in, an answer out. For one thread.
class Service
{
public:
    /// `store` is borrowed and must outlive the service. Makes the registers of every group.
    Service(const Options& options, Store& store, Clock clock = systemTime);

    /// Where the links to receipts lead, `http://127.0.0.1:PORT/`.
    void setAddress(const std::string& address) { address_ = address; }

    [[nodiscard]] Reply answer(const Request& request);

private:
    Reply perform(Call& call, const Request& request);
    Reply giveToken(const Call& call);
    Reply takeDocument(Call& call, const std::string& body);
    Reply report(Call& call);

    /// The code that bars the call, if any; fills in the login that the token belongs to.
    [[nodiscard]] std::optional<int> refusal(Call& call);
    [[nodiscard]] std::string wrongFields(const Call& call, const Group& group) const;
    [[nodiscard]] Document newDocument(const Call& call, const std::string& body, const Group& group);
    [[nodiscard]] const Group* findGroup(const std::string& code) const;
    [[nodiscard]] const User* findUser(const std::string& login) const;
    [[nodiscard]] Reply error(Endpoint endpoint, int code, const std::string& details = {}) const;
    [[nodiscard]] Reply waiting(const Document& document) const;
    [[nodiscard]] Reply finished(const Document& document) const;
    [[nodiscard]] Reply status(
        const Document& document, const char* word, const Json& error, const Json& payload) const;

    Options options_;
    Store& store_;
    Clock clock_;
    std::string address_;
};

} // namespace emulator
