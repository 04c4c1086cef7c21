#pragma once

#include "host/transport/restclient.h"
#include "till/wire/exchangerecord.h"
#include "till/wire/serviceanswer.h"
#include "till/wire/tokenrenewals.h"

#include <functional>
#include <mutex>
#include <utility>

namespace till {

/// The real transport, which also notes what went over the wire. The driver's exceptions alone cannot tell
/// "not sent", "refused" and "no answer" apart.
///
/// It keeps a driver that renews its token from doing so without an end: pauses grow from one renewal in a
/// row to the next, and after the last one every request fails like one without a connection. It has the
/// driver renew a token that the service does not know, once in a row, like one that has expired. And it
/// withholds an answer to a request for a token that holds none.
///
/// One thread uses it; others may only hold() it.
class ObservingTransport : public RestClient
{
public:
    using Sleep = std::function<void(std::chrono::milliseconds)>;

    explicit ObservingTransport(TokenRenewals usedRenewals = TokenRenewals(), Sleep usedSleep = sleepFor);

    /// Asked before the first byte of each receipt, with its address and body. What it throws comes out of
    /// post(), and nothing is sent.
    using Gate = std::function<void(const QUrl& url, const QByteArray& body)>;
    /// An empty gate lets everything through.
    void setGate(Gate asked) { gate = std::move(asked); }

    /// Called before each question about a document, which it may delay, and with the answer.
    struct Questions
    {
        std::function<void()> before = [] {};
        std::function<void(const ServiceAnswer& answer)> after = [](const ServiceAnswer&) {};
    };
    void setQuestions(Questions told) { questions = std::move(told); }

    /// Asks the gate about a receipt that a driver is about to register in another way.
    void admit(const QUrl& url, const QByteArray& body) const;
    /// Notes that such a receipt may be registered from now on.
    void noteHandedOver();

    /// Forgets what was seen; call before each receipt.
    void startReceipt();
    /// Forgets the last answer about a document; call before each question of the program's own.
    void startQuestion();
    [[nodiscard]] const WireRecord& seen() const { return record; }

    /// What is known of a receipt, while other receipts are sent.
    struct Memory
    {
        WireRecord record;
        TokenRenewals renewals;
    };
    [[nodiscard]] Memory memory() const { return {record, renewals}; }
    /// Goes on with that receipt.
    void resume(const Memory& memory);

    /// The exchanges of this transport.
    [[nodiscard]] ExchangeRecord& exchanges() { return recorded; }

    /// While the lock is held, seen() does not change and no further request goes out.
    [[nodiscard]] std::unique_lock<std::mutex> hold() { return std::unique_lock(guard); }

    /// Throws FrWorkWithServiceException instead of asking once more, before startQuestion(), about a
    /// document that the service has reported as failed: the driver takes some codes of a failed register for
    /// "ask again".
    bool get(const QUrl& url, const QJsonDocument& document, const Headers& headers) override;
    /// Blocks for the pause before a further token, too.
    bool post(const QUrl& url, const QByteArray& body, const Headers& headers) override;
    [[nodiscard]] QVariant getResponseData() const override;

protected:
    void sending() override;

private:
    static void sleepFor(std::chrono::milliseconds time);
    bool exchange(ServiceAnswer& into, const std::function<bool()>& request);
    [[nodiscard]] bool exchangeToken(const std::function<bool()>& request);
    [[nodiscard]] bool exchangeWithToken(ServiceAnswer& into, const std::function<bool()>& request);
    void forget(ServiceAnswer& answer);
    void note(ServiceAnswer& into);
    void giveUp(ServiceAnswer& into);

    TokenRenewals renewals;
    Sleep sleep;
    Gate gate;
    Questions questions;
    std::mutex guard;
    ExchangeRecord recorded;
    WireRecord record;
    bool carriesReceipt = false;
    // What the driver gets instead of the answer that arrived.
    std::optional<QVariant> substitute;
};

} // namespace till
