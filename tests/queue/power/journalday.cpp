#include "tests/queue/power/scenarios.h"

#include "till/error.h"
#include "till/journal/journal.h"

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace power {

namespace {

using till::Journal;
using till::JournalClaim;
using till::ReceiptState;

constexpr int receipts = 12;

till::ComposedReceipt composed(int number, const char* content)
{
    return {u"shop_1"_s, u"r%1"_s.arg(number), QByteArray(content) + QByteArray::number(number)};
}

JournalClaim claimed(Journal& journal, int number, const char* content = "milk")
{
    return journal.claim(composed(number, content), u"receipts.jsonl"_s, number);
}

QByteArray contentOf(Journal& journal)
{
    QByteArray content;
    for (int number = 1; number <= receipts; ++number) {
        const QString id = u"r%1"_s.arg(number);
        if (const auto record = journal.find(u"shop_1"_s, id))
            content += u"%1 %2 %3 %4 %5 %6 %7\n"_s
                           .arg(record->id, till::nameOf(record->state), QString::fromUtf8(record->digest),
                               QString::number(record->attempt), QString::number(record->line),
                               record->sent.toString(Qt::ISODateWithMs), record->uuid)
                           .toUtf8();
    }
    return content;
}

void work(const QString& folder, RecordingVfs& vfs)
{
    constexpr std::array endings{ReceiptState::Registered, ReceiptState::Refused, ReceiptState::Unknown,
        ReceiptState::Failed, ReceiptState::Incomplete, ReceiptState::Accepted};
    for (int number = 1; number <= receipts; number += 3) {
        Journal journal(folder + u"/journal.db"_s);
        const auto promise = [&] { vfs.promise(contentOf(journal)); };
        promise();
        // Of three, the outcome of the first is known, the second was not sent, and the third is sent again.
        const JournalClaim first = claimed(journal, number);
        promise();
        const ReceiptState state = endings[static_cast<std::size_t>(number) % endings.size()];
        journal.conclude(
            first, state, u"u-%1"_s.arg(number), till::JournalEvidence{u"99"_s, number, u"123"_s, 160});
        promise();
        const JournalClaim second = claimed(journal, number + 1);
        promise();
        journal.withdraw(second);
        promise();
        std::ignore = claimed(journal, number + 2);
        promise();
        std::ignore = claimed(journal, number + 2);
        promise();
    }
}

void requireUndamaged(const QString& file)
{
    sqlite3* database = nullptr;
    QByteArray answer;
    const auto read = [](void* into, int /*columns*/, char** values, char** /*names*/) {
        *static_cast<QByteArray*>(into) += values[0];
        return 0;
    };
    sqlite3_open(file.toUtf8().constData(), &database);
    sqlite3_exec(database, "PRAGMA integrity_check", read, &answer, nullptr);
    sqlite3_close(database);
    if (answer != "ok")
        throw till::Error(till::Problem::Setup, u"damaged: "_s + QString::fromUtf8(answer));
}

QByteArray contentAfterCut(const QString& folder)
{
    const QString file = folder + u"/journal.db"_s;
    Journal journal(file);
    requireUndamaged(file);
    const QByteArray content = contentOf(journal);
    const JournalClaim claim = claimed(journal, receipts + 1);
    journal.conclude(claim, ReceiptState::Refused, {}, {});
    return content;
}

} // namespace

Scenario journalDay()
{
    return {work, contentAfterCut};
}

} // namespace power
