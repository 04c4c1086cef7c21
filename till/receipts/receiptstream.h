#pragma once

#include "till/receipts/receiptfile.h"

#include <optional>

namespace till {

/// Receipts that arrive one a line, each handed out as soon as its line is complete.
class ReceiptStream
{
public:
    /// The descriptor is borrowed.
    explicit ReceiptStream(int fileDescriptor)
        : descriptor(fileDescriptor)
    {
    }

    /// The next line that is not blank; blocks until there is one. None at the end. Throws Error when reading
    /// fails and when a line is larger than 16 MiB.
    [[nodiscard]] std::optional<RawReceipt> next();

private:
    [[nodiscard]] bool readMore();

    int descriptor;
    QByteArray unread;
    int line = 0;
    bool atEnd = false;
};

} // namespace till
