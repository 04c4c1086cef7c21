#pragma once

#include "queue/store/views.h"
#include "tests/e2e/support/shop.h"

/// A till that registers through a queue of its own, whose workers have all of its receipts under way at
/// once.
class QueueTill
{
public:
    explicit QueueTill(const QString& url);

    [[nodiscard]] Ran queue(const QStringList& arguments, const QByteArray& input = {}) const;
    /// Hands over a receipt of 160 roubles for each id.
    [[nodiscard]] Ran add(const QStringList& ids) const;
    /// Has a worker at it until each of these was tried at least once, and kills it. Returns false if that
    /// takes too long.
    [[nodiscard]] bool tryOnce(const QStringList& ids) const;
    [[nodiscard]] Ran work() const
    {
        return queue({QStringLiteral("work"), QStringLiteral("--until-empty")});
    }

    /// How the first attempt at the receipt ended.
    [[nodiscard]] queue::Event firstEnd(const QString& id) const;
    [[nodiscard]] queue::Entry entry(const QString& id) const;

    [[nodiscard]] QString place() const { return folder.filePath(QStringLiteral("queue.db")); }
    [[nodiscard]] QString address() const { return registerAddress; }

    Shop shop;

private:
    [[nodiscard]] queue::Store store() const { return {place(), address()}; }

    QTemporaryDir folder;
    QString registerAddress;
};
