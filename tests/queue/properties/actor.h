#pragma once

#include "queue/store/claims.h"

#include <functional>
#include <vector>

/// Thrown where a process dies.
struct Died
{
};

/// Counts statements down, and blows before the last of them; one of 0 statements never does.
struct Fuse
{
    int statements = 0;
    /// May throw.
    std::function<void()> blow;

    void count()
    {
        if (statements > 0 && --statements == 0)
            blow();
    }
};

/// A process of a worker: its connection, its lock, and what it believes to have under way.
struct Actor
{
    /// `fuse` is borrowed, and counts the statements of enrolling, too.
    Actor(const QString& place, const QString& address, Fuse& fuse)
        : store(place, address, queue::Store::defaultPatience, [&fuse] { fuse.count(); })
        , locks(store)
        , number(enrol(store, locks, QStringLiteral("till")))
        , patient(store, locks, number, std::chrono::hours(1))
        , impatient(store, locks, number, std::chrono::milliseconds(-1))
    {
    }

    queue::Store store;
    queue::WorkerLocks locks;
    qint64 number;
    queue::Claims patient;
    /// Takes everybody for overdue.
    queue::Claims impatient;
    std::vector<queue::Claim> underWay;
};
