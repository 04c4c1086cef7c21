#pragma once

#include "queue/store/store.h"

namespace queue {

// What a person decides about a receipt. Each is written down with the receipt, and throws till::Error
// (Setup) that says why it cannot be.

/// Keeps workers from taking the receipt.
void hold(Store& store, const QString& id);
/// Ends hold(), also where a worker has set the receipt aside.
void release(Store& store, const QString& id);
/// Withdraws a receipt; only where nothing was ever sent.
void cancel(Store& store, const QString& id);
/// Has the receipt sent again under its id: at once where its outcome is not known, and once more where it
/// was refused.
void retry(Store& store, const QString& id);
/// Stores a receipt in place of one that was not registered and will not be. `successor` has a new id.
void replace(Store& store, const QString& id, const NewEntry& successor);

} // namespace queue
