#pragma once

#include "queue/store/claims.h"
#include "queue/work/ending.h"
#include "queue/work/pace.h"
#include "queue/work/pause.h"
#include "till/config/registerconfig.h"
#include "till/device/plugindiscovery.h"
#include "till/sale/registrar.h"
#include "till/sale/session.h"

#include <vector>

namespace queue {

/// What all lanes of a worker share. Functions are called from several threads.
struct Surroundings
{
    QString store;
    QString address;
    till::RegisterConfig config;
    till::PluginFile plugin;
    /// A result as `sell --json` writes it, without the line break.
    std::function<QByteArray(const till::ReceiptResult&)> toLine;
    /// A message for people.
    std::function<void(const QString&)> say;
    /// What a person must do before the register works again; empty when it works.
    std::function<void(const QString&)> showTrouble = [](const QString&) {};
    /// Called several times a second, in the thread of the worker, as long as it goes on.
    std::function<void()> showLife = [] {};
    std::chrono::milliseconds lease;
    /// How long the store waits for other processes.
    std::chrono::milliseconds patience = Store::defaultPatience;
    /// How long an idle lane waits before it looks into the store again, and a worker before it looks for
    /// dead ones.
    std::chrono::milliseconds idle{200};
    /// Whether the work ends when nothing is left, or when the register does not come back.
    bool untilEmpty = false;
};

/// One register at work, with a device object of its own: claims receipts, sends them one after the other,
/// asks about those that the service works on, writes down what became of each. Runs in a thread of its own,
/// which creates it.
class Lane
{
public:
    /// All are borrowed. `usedCreation` is held while a device is created or destroyed: one at a time.
    Lane(const Surroundings& usedSurroundings, const WorkerLocks& locks, qint64 worker, Pause& usedPause,
        Pace& pace, std::mutex& usedCreation);
    ~Lane();
    Q_DISABLE_COPY_MOVE(Lane)

    /// Works until the pause is stopped or, where that is asked for, nothing is left. Returns whether it
    /// ended as it should, and not because the register did not come back.
    [[nodiscard]] bool run();

private:
    // A receipt that the service works on.
    struct UnderWay
    {
        Claim claim;
        till::AwaitedReceipt awaited;
        // Whether it went out with the content of its earlier attempts.
        bool hasSameContent;
        std::chrono::steady_clock::time_point due;
    };

    [[nodiscard]] bool isOver();
    [[nodiscard]] bool mayGoOn();
    [[nodiscard]] bool sendNext();
    [[nodiscard]] bool askNext();
    [[nodiscard]] std::chrono::milliseconds untilNext() const;
    void send(const Claim& claim);
    void conclude(const Claim& claim, till::ReceiptResult result, bool isSameContent);
    void keepWatch(const Claim& claim);
    void pauseFor(const QString& trouble);

    const Surroundings& surroundings;
    Pause& pause;
    std::mutex& creation;
    Store store;
    Claims claims;
    std::unique_ptr<till::Session> session;
    std::vector<UnderWay> underWay;
    // Whether the receipt that is sold goes out with the content of its earlier attempts.
    bool hasSameContent = true;
    // Of the store, when the receipt was about to be sent.
    std::exception_ptr storeFailure;
    bool isConnected = false;
};

} // namespace queue
