#pragma once

#include "till/database/database.h"
#include "till/error.h"

namespace queue {

/// The store cannot be used. The message names the file and the cause.
class StoreError : public till::Error
{
public:
    StoreError(const QString& file, const QString& reason, till::Fault usedFault = till::Fault::Passing);

    /// Whether it is worth waiting for the store.
    [[nodiscard]] bool isPassing() const { return fault == till::Fault::Passing; }

private:
    till::Fault fault;
};

} // namespace queue
