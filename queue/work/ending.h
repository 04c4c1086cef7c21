#pragma once

#include "queue/store/entry.h"
#include "till/sale/result.h"
#include "till/wire/serviceanswer.h"

namespace queue {

/// What an attempt means for the receipt and its register.
struct Judgement
{
    Ending ending;
    /// Why the register must pause before any receipt is sent; empty when it need not.
    QString trouble;
};

/// Judges an attempt: only what the service says of the receipt itself ends it. A fault of the account, or a
/// service that does not answer, leaves the receipt as it was.
///
/// `entry` is the receipt as it was before the attempt, `seen` what went over the wire, and `hasSameContent`
/// whether that is what earlier attempts may have sent.
[[nodiscard]] Judgement judge(
    const Entry& entry, const till::ReceiptResult& result, const till::WireRecord& seen, bool hasSameContent);

} // namespace queue
