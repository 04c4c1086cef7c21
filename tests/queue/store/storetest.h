#pragma once

#include "queue/store/claims.h"
#include "queue/store/decisions.h"
#include "queue/store/intake.h"
#include "queue/store/views.h"
#include "tests/support/qtprinters.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A receipt that is enough for the store, which does not look into it.
inline queue::NewEntry newEntry(const QString& id, const char* goods = "milk")
{
    return {id, "{\"id\":\"" + id.toUtf8() + "\",\"goods\":\"" + goods + "\"}", "digest",
        QStringLiteral("a.json"), 3};
}

inline queue::Added addOne(queue::Store& store, const queue::NewEntry& entry)
{
    queue::Added added{};
    queue::storeAll(store, [&](const auto& add) { added = add(entry); });
    return added;
}

inline queue::Ending endingAs(queue::State state)
{
    queue::Ending ending;
    ending.state = state;
    ending.uuid = QStringLiteral("u-1");
    ending.result = "{\"outcome\":\"any\"}";
    if (state == queue::State::Registered)
        ending.evidence = till::JournalEvidence{QStringLiteral("99"), 7, QStringLiteral("123"), 160};
    return ending;
}

/// A folder in memory, where waiting for the disk costs nothing; on the disk where there is none.
inline QString folderTemplate()
{
    const QString memory = QStringLiteral("/dev/shm");
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + QStringLiteral("/queue-XXXXXX");
}

class StoreTest : public testing::Test
{
protected:
    [[nodiscard]] QString file() const { return folder.filePath(QStringLiteral("queue.db")); }
    [[nodiscard]] QStringList history(const QString& id)
    {
        QStringList names;
        for (const queue::Event& event : historyOf(store, store.find(id).value()))
            names << event.name;
        return names;
    }
    [[nodiscard]] queue::State stateOf(const QString& id) { return store.find(id).value().state; }

    QTemporaryDir folder{folderTemplate()};
    queue::Store store{file(), QStringLiteral("shop_1")};
};
