#pragma once

#include "queue/store/store.h"

namespace queue {

/// What came of handing over a receipt.
enum class Added
{
    New,
    /// The same receipt is in the queue already, in whatever state.
    Known,
};

/// Stores the receipts that `handOver` passes to its argument: all of them or, where it throws, none. They
/// are on the disk when this returns.
///
/// What is passed throws till::Error (Receipt) for an id that the queue has with other content.
void storeAll(
    Store& store, const std::function<void(const std::function<Added(const NewEntry&)>& add)>& handOver);

} // namespace queue
