#pragma once

#include "till/error.h"

namespace queue {

/// The store cannot be used. The message names the file and the cause.
class StoreError : public till::Error
{
public:
    StoreError(const QString& file, const QString& reason);
};

} // namespace queue
