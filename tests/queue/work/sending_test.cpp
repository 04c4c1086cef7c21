#include "host/vposfrdriver.h"
#include "queue/store/storeerror.h"
#include "queue/work/worker.h"
#include "tests/e2e/support/service.h"
#include "tests/queue/store/storetest.h"
#include "till/config/registersetup.h"
#include "till/wire/installedtransport.h"
#include "till/wire/recordingtransport.h"

#include <QJsonDocument>
#include <QLoggingCategory>

#include <gmock/gmock.h>

#include <future>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using namespace queue;
using testing::HasSubstr;

constexpr auto receiptText =
    R"({"id":"r1","requisites":[{"tag":1008,"value":"buyer@example.com"}],)"
    R"("positions":[{"name":"Milk","price":160,"quantity":1,"sum":160,"taxCode":1}],)"
    R"("payments":[{"type":1,"sum":160}]})";

// A worker with one lane, whose service never says what became of a receipt. It stops at its first message.
class SendingWorker : public testing::Test
{
protected:
    SendingWorker()
    {
        QLoggingCategory::setFilterRules(u"frdriver*=false"_s);
        surroundings.store = folder.filePath(u"queue.db"_s);
        surroundings.address = registerAddress(service.url(), u"shop_1"_s);
        surroundings.config.settings = {{u"url"_s, service.url()}, {u"login"_s, u"shop"_s},
            {u"password"_s, u"secret"_s}, {u"groupCode"_s, u"shop_1"_s}, {u"inn"_s, u"7700000009"_s},
            {u"email"_s, u"shop@example.com"_s}, {u"paymentAddress"_s, u"https://shop.example.com"_s}};
        surroundings.plugin = till::pluginAt(QStringLiteral(PLUGIN_FOLDER "/libatolonline.so"));
        surroundings.toLine = [](const till::ReceiptResult& result) { return result.id.toUtf8(); };
        surroundings.say = [this](const QString& text) {
            said << text;
            worker->stop();
        };
        surroundings.lease = 1h;
        surroundings.patience = 1ms;
        surroundings.idle = 1ms;
        surroundings.untilEmpty = true;
        store.emplace(surroundings.store, surroundings.address);
    }
    ~SendingWorker() override { QLoggingCategory::setFilterRules({}); }
    Q_DISABLE_COPY_MOVE(SendingWorker)

    void add(const QByteArray& digest) { addOne(*store, {u"r1"_s, receiptText, digest, u"a.json"_s, 1}); }
    // The digest of what the driver will send.
    [[nodiscard]] QByteArray composedDigest()
    {
        till::RecordingTransport transport;
        const till::InstalledTransport installed(transport);
        till::LoadedRegister loaded(surroundings.plugin);
        till::setUp(loaded, surroundings.config);
        const till::Receipt receipt = till::toReceipt(QJsonDocument::fromJson(receiptText).object());
        till::handOver(loaded.driver(), receipt);
        static_cast<void>(loaded.service().documentClose(receipt.document));
        return till::readComposed(QUrl(surroundings.address + u"/sell"_s), transport.takeBody()).digest;
    }
    // What a worker does that believes this one dead. It happens in the transaction of the claim, so the
    // store has it before the receipt can be sent.
    void takeOverAfterTheClaim()
    {
        store->database().change("CREATE TRIGGER takenOver AFTER INSERT ON events WHEN new.event = 'claimed'"
                                 " BEGIN UPDATE receipts SET worker = worker + 1, attempt = attempt + 1"
                                 " WHERE number = new.receipt; END");
    }
    // Empty when the worker ended as it should.
    [[nodiscard]] QString failureOfWork()
    {
        worker.emplace(surroundings, 1, u"w"_s, PauseLengths{1ms, 2ms});
        try {
            return worker->run() ? QString() : u"given up"_s;
        } catch (const StoreError& error) {
            return u"store: "_s + error.message();
        }
    }
    [[nodiscard]] QStringList history()
    {
        QStringList names;
        for (const Event& event : historyOf(*store, entry()))
            names << event.name;
        return names;
    }
    [[nodiscard]] Entry entry() { return store->find(u"r1"_s).value(); }

    void expectTakenOverAndNotSent()
    {
        EXPECT_EQ(failureOfWork(), QString());
        EXPECT_EQ(sells, 0);
        EXPECT_EQ(said, QStringList{u"r1: another worker has taken this receipt over"_s});
        EXPECT_EQ(entry().state, State::Sent);
        EXPECT_EQ(entry().attempt, 2) << "it is the other's";
    }

    std::atomic<int> sells = 0;
    std::function<void()> beforeAnswer = [] {};
    Service service{[this](Service::Request& request) {
        if (request.call() == Service::Call::Token)
            return request.answer(200, R"({"error":null,"token":"t","timestamp":"01.01.2026 00:00:00"})");
        ++sells;
        beforeAnswer();
        request.answer(200, "{}");
    }};
    QTemporaryDir folder{folderTemplate()};
    Surroundings surroundings;
    std::optional<Store> store;
    std::optional<Worker> worker;
    QStringList said;
};

TEST_F(SendingWorker, SendsAReceiptThatIsItsOwn)
{
    add(composedDigest());
    EXPECT_EQ(failureOfWork(), QString());
    EXPECT_EQ(sells, 1);
    EXPECT_EQ(history(), (QStringList{u"added"_s, u"claimed"_s, u"returned"_s}));
}

TEST_F(SendingWorker, DoesNotSendWhatIsAnothersByNow)
{
    add(composedDigest());
    takeOverAfterTheClaim();
    expectTakenOverAndNotSent();
    EXPECT_EQ(history(), (QStringList{u"added"_s, u"claimed"_s, u"stale"_s}));
}

TEST_F(SendingWorker, DoesNotSendWhatIsAnothersByNowAndWasComposedAnew)
{
    add("of another configuration");
    takeOverAfterTheClaim();
    expectTakenOverAndNotSent();
    EXPECT_EQ(entry().digest, "of another configuration");
}

// The driver turns any exception into a refusal; nobody has refused this receipt.
TEST_F(SendingWorker, LeavesAReceiptAsItIsWhereTheStoreFailsBeforeItIsSent)
{
    add("of another configuration");
    store->database().change("CREATE TRIGGER failing BEFORE UPDATE OF digest ON receipts BEGIN"
                             " SELECT raise(ABORT, 'the disk is worn'); END");
    EXPECT_THAT(failureOfWork().toStdString(), testing::AllOf(HasSubstr("store: "), HasSubstr("worn")));
    EXPECT_EQ(sells, 0);
    EXPECT_EQ(said, QStringList());
    EXPECT_EQ(history(), (QStringList{u"added"_s, u"claimed"_s}));
    EXPECT_EQ(entry().state, State::Sent);
    EXPECT_FALSE(entry().isHeld);
    EXPECT_EQ(entry().fruitless, 0);
}

// Otherwise the service manager would kill it, and the outcome of what is being sent would be lost.
TEST_F(SendingWorker, ShowsLifeWhereTheStoreHasFailedAndTheServiceHasNotAnswered)
{
    constexpr int enough = 3;
    std::promise<void> enoughShown;
    // The limit lets the test fail, rather than hang, where no signs come.
    beforeAnswer = [shown = enoughShown.get_future().share()] { shown.wait_for(1s); };
    int shown = 0;
    // The worker's entry in the store is due after each sign, and cannot be written while the store is
    // locked.
    surroundings.lease = 3ms;
    surroundings.showLife = [&] {
        if (sells == 0 || shown > enough)
            return;
        if (++shown == 1)
            store->database().change("BEGIN IMMEDIATE");
        if (shown != enough)
            return;
        store->database().change("COMMIT");
        enoughShown.set_value();
    };
    add(composedDigest());
    EXPECT_THAT(failureOfWork().toStdString(), HasSubstr("database is locked"));
    EXPECT_GE(shown, enough);
    EXPECT_EQ(history(), (QStringList{u"added"_s, u"claimed"_s, u"returned"_s})) << "the outcome is kept";
}

} // namespace
