#pragma once

#include "queue/store/store.h"
#include "till/sale/session.h"

namespace queue {

/// What the service says of a receipt whose outcome the store does not know.
enum class Word
{
    Registered,
    /// It could not be registered, by one answer. A worker believes that only when it is repeated.
    Failed,
    Waiting,
    /// No answer, or none about this receipt.
    Unclear,
    /// Its uuid has not arrived, so the service cannot be asked.
    Unasked,
};

/// Asks the service once about every receipt that is not finished and may have been sent; blocks for one
/// exchange each. Sends no receipt and changes nothing. The session is connected.
void askAboutDoubtful(
    Store& store, till::Session& session, const std::function<void(const Entry& entry, Word word)>& handle);

} // namespace queue
