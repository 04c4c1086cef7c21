#pragma once

#include "queue/store/claims.h"
#include "queue/store/decisions.h"
#include "queue/store/intake.h"
#include "queue/store/views.h"
#include "tests/queue/store/testplace.h"
#include "tests/support/qtprinters.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A receipt that is enough for the store, which does not look into it.
inline queue::NewEntry newEntry(const QString& id, const char* goods = "milk")
{
    return {id, R"({"id":")" + id.toUtf8() + R"(","goods":")" + goods + R"("})", "digest",
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
    ending.result = R"({"outcome":"any"})";
    if (state == queue::State::Registered)
        ending.evidence = till::JournalEvidence{QStringLiteral("99"), 7, QStringLiteral("123"), 160};
    return ending;
}

/// Runs on every kind of database: STORE_TEST_SUITE(Name) after the class.
class StoreTest : public testing::TestWithParam<PlaceKind>
{
protected:
    [[nodiscard]] QString place() const { return where.place(); }
    [[nodiscard]] QStringList history(const QString& id)
    {
        QStringList names;
        for (const queue::Event& event : historyOf(store, store.find(id).value()))
            names << event.name;
        return names;
    }
    [[nodiscard]] queue::State stateOf(const QString& id) { return store.find(id).value().state; }

    TestPlace where{GetParam()};
    queue::Store store{place(), QStringLiteral("shop_1")};
};

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): the framework's own is one.
#define STORE_TEST_SUITE(name)                                                                               \
    INSTANTIATE_TEST_SUITE_P(Stores, name, testing::ValuesIn(placeKinds()), placeKindName)
