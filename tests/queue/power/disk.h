#pragma once

#include "tests/queue/power/request.h"

#include <functional>
#include <map>
#include <random>

namespace power {

/// What is found of the requests that the disk was not yet asked to sync. SQLite relies on one thing: a
/// write that the power interrupts damages no byte beside those that are written.
enum class Remains
{
    Nothing,
    Everything,
    /// Everything, but the last of it in part.
    LastInPart,
    /// Everything up to some request, and that in part.
    UpToOne,
    /// All of some files, and nothing of the others.
    SomeFiles,
    /// Any of it, whole or in part.
    Any,
};

/// Numbers that are the same in every run.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : numbers(seed)
    {
    }

    /// Less than `limit`.
    [[nodiscard]] qsizetype below(qsizetype limit)
    {
        return static_cast<qsizetype>(numbers() % static_cast<std::uint64_t>(limit));
    }
    [[nodiscard]] bool isOneIn(qsizetype count) { return below(count) == 0; }

private:
    std::mt19937 numbers;
};

/// A folder on a disk that keeps nothing until it is asked to sync, and loses or tears anything before.
class Disk
{
public:
    /// The content of files by name.
    using Files = std::map<QByteArray, QByteArray>;
    /// Whether the disk disregards the request to sync this file; without a name, the names in the folder.
    using Lies = std::function<bool(const QByteArray& name)>;

    explicit Disk(Lies usedLies = {});

    void take(const Request& request);
    /// What is found if the power goes now.
    [[nodiscard]] Files afterCut(Remains remains, Chance& chance) const;

private:
    struct Pending
    {
        /// Counts the requests of all files.
        qsizetype order;
        Request request;
    };
    struct File
    {
        QByteArray name;
        QByteArray content;
        std::vector<Pending> pending;
    };
    /// Numbers of files, 0 for none.
    struct Name
    {
        int file = 0;
        std::vector<Pending> pending;
    };
    class Cut;

    [[nodiscard]] std::vector<qsizetype> pendingOrders() const;

    Lies lies;
    qsizetype taken = 0;
    std::map<int, File> files;
    std::map<QByteArray, Name> names;
    std::map<QByteArray, std::vector<QByteArray>> shared;
};

} // namespace power
