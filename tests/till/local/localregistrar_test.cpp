#include "till/local/localregistrar.h"

#include "frbase/basicfrdriver.h"
#include "host/exceptions.h"
#include "tests/support/qtprinters.h"
#include "tests/support/textfile.h"
#include "till/error.h"
#include "till/journal/journal.h"
#include "till/sale/salejournal.h"
#include "till/wire/observingtransport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

enum class Failure
{
    None,
    NotOpened,
    NoLine,
    NotClosed,
    // The register has closed the receipt, and its answer was lost.
    AnswerLost,
    NotPrinted,
};

// A register that does as it is told, and notes what it was asked.
class Register : public BasicFrDriver
{
public:
    void checkOpen(const FiscalDocument& document) override
    {
        calls << u"open"_s;
        open = document.getInternalIdentifier();
        paid = 0;
        if (whileOpen)
            whileOpen();
        if (failure == Failure::NotOpened)
            throw FrCommandException(u"нет бумаги"_s);
        if (failure == Failure::NoLine)
            throw FrNoConnectionException(u"Нет связи"_s);
    }
    void checkPay(const FrPayment& payment) override { paid += payment.getSum(); }
    void checkTotal() override { calls << u"total"_s; }
    void checkCancel() override { calls << u"cancel"_s; }
    QJsonObject checkClose(const FiscalDocument& /*document*/) override
    {
        calls << u"close"_s;
        if (failure == Failure::NotClosed)
            throw FrCommandException(u"смена не открыта"_s);
        fill(lastFiscalInfo, paid);
        last = open;
        if (failure == Failure::AnswerLost)
            throw FrNoConnectionException(u"Нет связи"_s);
        return {};
    }
    void checkWaitForPrint() override
    {
        if (failure == Failure::NotPrinted)
            throw FrCommandException(u"замята бумага"_s);
    }
    bool isLastCheckWithNumber(const QString& id) override { return knowsItsLast && id == last; }

    Failure failure = Failure::None;
    bool knowsItsLast = false;
    std::function<void()> whileOpen;
    std::function<void(FiscalInfo&, double)> fill = [](FiscalInfo& info, double total) {
        info.fnNumber = u"9999078900006364"_s;
        ++info.fiscalDocumentNumber;
        info.fiscalSign = u"3449555941"_s;
        info.total = total;
    };
    QStringList calls;

private:
    QString open;
    QString last;
    double paid = 0;
};

QueuedReceipt receipt(const QString& id, double sum = 160)
{
    QueuedReceipt queued;
    queued.file = u"receipts"_s;
    queued.line = 1;
    queued.receipt.document.setInternalIdentifier(id);
    FrPosition milk;
    milk.setName(u"Молоко"_s);
    milk.setPriceWithDisc(sum);
    milk.setCount(1);
    queued.receipt.positions << milk;
    queued.receipt.payments << FrPayment(1, sum);
    return queued;
}

// A till whose journal outlives the runs of its program.
class LocalSale : public testing::Test
{
protected:
    [[nodiscard]] ReceiptResult sell(const QueuedReceipt& queued)
    {
        Journal journal(folder.filePath(u"journal.db"_s));
        ObservingTransport transport;
        const auto warn = [this](const QString& warning) { warnings << warning; };
        SaleJournal kept(usesJournal ? &journal : nullptr, transport, warn);
        LocalRegistrar registrar(device, QUrl(u"register:/sample/0/sell"_s), transport, kept, warn);
        kept.begin(queued);
        ReceiptResult result = kept.concluded(registrar.sell(queued));
        kept.check();
        return result;
    }
    [[nodiscard]] std::optional<JournalRecord> recorded(const QString& id)
    {
        return Journal(folder.filePath(u"journal.db"_s)).find(u"register:/sample/0"_s, id);
    }
    [[nodiscard]] QString soldWithout(const std::function<void(FiscalInfo&)>& remove)
    {
        device.fill = [remove, whole = device.fill](FiscalInfo& info, double total) {
            whole(info, total);
            remove(info);
        };
        const ReceiptResult result = sell(receipt(u"r1"_s));
        EXPECT_EQ(result.outcome, Outcome::Incomplete);
        EXPECT_FALSE(result.fiscal);
        return result.error ? result.error->message : QString();
    }

    Register device;
    bool usesJournal = true;
    QStringList warnings;

private:
    QTemporaryDir folder;
};

TEST_F(LocalSale, IsRegisteredOnTheWordOfTheDriver)
{
    const ReceiptResult result = sell(receipt(u"r1"_s));
    EXPECT_EQ(result.outcome, Outcome::Registered);
    EXPECT_EQ(result.witness, Witness::Driver);
    EXPECT_TRUE(result.sent);
    EXPECT_EQ(nextStepName(result.next), u"none"_s);
    EXPECT_FALSE(result.recovered);
    EXPECT_EQ(result.compared, Comparison::None);
    ASSERT_TRUE(result.fiscal);
    EXPECT_EQ(result.fiscal->fiscalDocumentNumber, 1);
    EXPECT_EQ(device.calls, (QStringList{u"cancel"_s, u"open"_s, u"total"_s, u"close"_s}))
        << "an interrupted run may have left a receipt open";
    EXPECT_EQ(sell(receipt(u"r2"_s)).fiscal->fiscalDocumentNumber, 2);
}

TEST_F(LocalSale, OfADriverThatCannotProveItIsIncomplete)
{
    device.fill = [](FiscalInfo&, double) {};
    const ReceiptResult result = sell(receipt(u"r1"_s));
    EXPECT_EQ(result.outcome, Outcome::Incomplete);
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->message,
        u"The driver says that the receipt is registered, but returns no valid fnNumber, "
        "fiscalDocumentNumber, fiscalSign"_s);
    EXPECT_TRUE(result.advice.startsWith(u"Do NOT sell it again "_s)) << result.advice.toStdString();
}

TEST_F(LocalSale, NeedsTheSign)
{
    EXPECT_EQ(soldWithout([](FiscalInfo& info) { info.fiscalSign.clear(); }),
        u"The driver says that the receipt is registered, but returns no valid fiscalSign"_s);
}

TEST_F(LocalSale, NeedsItsTotal)
{
    EXPECT_EQ(soldWithout([](FiscalInfo& info) { info.total = 5; }),
        u"The driver says that the receipt is registered, but with the total 5.00 instead of 160.00"_s);
}

TEST_F(LocalSale, NeedsADocumentOfItsOwn)
{
    std::ignore = sell(receipt(u"r0"_s));
    EXPECT_EQ(soldWithout([](FiscalInfo& info) { info.fiscalDocumentNumber = 1; }),
        u"The driver says that the receipt is registered, but returns the fiscal data of an earlier document"_s);
}

TEST_F(LocalSale, ThatWasNotClosedCertainlyIsRefusedAndCancelled)
{
    device.failure = Failure::NotOpened;
    const ReceiptResult refused = sell(receipt(u"r1"_s));
    EXPECT_EQ(refused.outcome, Outcome::Refused);
    EXPECT_EQ(refused.error->type, u"FrCommandException"_s);
    EXPECT_EQ(device.calls, (QStringList{u"cancel"_s, u"open"_s, u"cancel"_s}));
    device.failure = Failure::NoLine;
    const ReceiptResult unsent = sell(receipt(u"r1"_s));
    EXPECT_EQ(unsent.verdict, SaleVerdict::NotSent);
    EXPECT_FALSE(unsent.sent);
    EXPECT_EQ(nextStepName(unsent.next), u"rerun"_s);
    EXPECT_TRUE(unsent.endsRun);
    device.failure = Failure::None;
    EXPECT_EQ(sell(receipt(u"r1"_s)).outcome, Outcome::Registered) << "it may be run again";
}

TEST_F(LocalSale, ThatFailedToCloseIsUnknownAndNeverHandedOverAgain)
{
    device.failure = Failure::NotClosed;
    const ReceiptResult unknown = sell(receipt(u"r1"_s));
    EXPECT_EQ(unknown.outcome, Outcome::Unknown);
    EXPECT_TRUE(unknown.endsRun);
    EXPECT_TRUE(unknown.sent);
    EXPECT_EQ(nextStepName(unknown.next), u"none"_s)
        << "without a journal, running it again hands it over again";
    EXPECT_TRUE(unknown.advice.contains(u"the register's last documents"_s)) << unknown.advice.toStdString();
    device.failure = Failure::None;
    device.calls.clear();
    const ReceiptResult again = sell(receipt(u"r1"_s));
    EXPECT_EQ(again.outcome, Outcome::Unknown);
    EXPECT_EQ(device.calls, QStringList());
}

TEST_F(LocalSale, WhoseAnswerWasLostIsRegisteredWhereTheDriverKnowsItsLastReceipt)
{
    device.failure = Failure::AnswerLost;
    device.knowsItsLast = true;
    const ReceiptResult result = sell(receipt(u"r1"_s));
    EXPECT_EQ(result.outcome, Outcome::Registered);
    EXPECT_FALSE(result.error);
}

TEST_F(LocalSale, OfUnknownOutcomeIsSettledByADriverThatKnowsItsLastReceipt)
{
    device.failure = Failure::AnswerLost;
    EXPECT_EQ(sell(receipt(u"r1"_s)).outcome, Outcome::Unknown);
    device.calls.clear();
    device.knowsItsLast = true;
    const ReceiptResult settled = sell(receipt(u"r1"_s));
    EXPECT_EQ(settled.outcome, Outcome::Registered);
    EXPECT_EQ(settled.witness, Witness::Driver);
    EXPECT_TRUE(settled.recovered);
    EXPECT_EQ(sell(receipt(u"r1"_s)).witness, Witness::Journal);
    EXPECT_EQ(device.calls, QStringList());
}

TEST_F(LocalSale, ThatIsRegisteredIsNotRepeated)
{
    std::ignore = sell(receipt(u"r1"_s));
    device.calls.clear();
    const ReceiptResult again = sell(receipt(u"r1"_s));
    EXPECT_EQ(again.outcome, Outcome::Registered);
    EXPECT_EQ(again.witness, Witness::Journal);
    EXPECT_TRUE(again.recovered);
    EXPECT_EQ(again.compared, Comparison::Content);
    EXPECT_EQ(device.calls, QStringList());
}

TEST_F(LocalSale, UnderTheIdOfAnotherIsRefused)
{
    std::ignore = sell(receipt(u"r1"_s));
    device.calls.clear();
    EXPECT_EQ(sell(receipt(u"r1"_s, 161)).outcome, Outcome::Refused);
    EXPECT_EQ(device.calls, QStringList());
}

// A program that ends before the receipt is closed has registered nothing, and the file may be run again.
TEST_F(LocalSale, IsRecordedOnlyWhenItIsAboutToBeClosed)
{
    std::optional<JournalRecord> early;
    device.whileOpen = [&] { early = recorded(u"r1"_s); };
    EXPECT_EQ(sell(receipt(u"r1"_s)).outcome, Outcome::Registered);
    EXPECT_FALSE(early);
    EXPECT_TRUE(recorded(u"r1"_s));
}

TEST_F(LocalSale, ThatAnotherProcessSellsAtTheSameTimeIsCancelled)
{
    device.whileOpen = [&] {
        device.whileOpen = {};
        device.failure = Failure::None;
        std::ignore = sell(receipt(u"r1"_s));
        device.calls.clear();
    };
    const ReceiptResult result = sell(receipt(u"r1"_s));
    EXPECT_EQ(result.outcome, Outcome::Registered);
    EXPECT_EQ(result.witness, Witness::Journal);
    EXPECT_EQ(device.calls, (QStringList{u"total"_s, u"cancel"_s}));
}

TEST_F(LocalSale, ThatWasIncompleteStaysIncomplete)
{
    device.fill = [](FiscalInfo&, double) {};
    std::ignore = sell(receipt(u"r1"_s));
    device.calls.clear();
    const ReceiptResult again = sell(receipt(u"r1"_s));
    EXPECT_EQ(again.outcome, Outcome::Incomplete);
    EXPECT_TRUE(again.advice.startsWith(u"Do NOT sell it again "_s)) << again.advice.toStdString();
    EXPECT_EQ(again.witness, Witness::Journal);
    EXPECT_EQ(recorded(u"r1"_s)->state, ReceiptState::Incomplete);
    EXPECT_EQ(device.calls, QStringList());
}

TEST(AddressOfALocalRegister, NamesPluginNumberAndPort)
{
    EXPECT_EQ(localAddress(u"sample"_s, 0, {}), QUrl(u"register:/sample/0/sell"_s));
    EXPECT_EQ(readComposed(localAddress(u"sample"_s, 2, u"/dev/ttyS%1"_s), {}).fiscalRegister,
        u"register:/sample/2/%2Fdev%2FttyS%251"_s);
    EXPECT_TRUE(messageOf<Error>([] {
        std::ignore = localAddress({}, 0, u"/dev/ttyS0"_s);
    }).contains(u"has no name"_s));
}

TEST_F(LocalSale, WithoutAJournalIsRepeated)
{
    usesJournal = false;
    EXPECT_EQ(sell(receipt(u"r1"_s)).fiscal->fiscalDocumentNumber, 1);
    EXPECT_EQ(sell(receipt(u"r1"_s)).fiscal->fiscalDocumentNumber, 2);
}

TEST_F(LocalSale, ThatCouldNotBePrintedIsRegistered)
{
    device.failure = Failure::NotPrinted;
    EXPECT_EQ(sell(receipt(u"r1"_s)).outcome, Outcome::Registered);
    EXPECT_EQ(warnings, QStringList{u"r1: not printed: замята бумага"_s});
}

} // namespace
