#pragma once

#include "queue/store/store.h"
#include "till/sale/result.h"

namespace frhost {

/// What a person does about a receipt of the queue next.
enum class QueueStep
{
    None,
    /// `retry`, once the cause is corrected.
    Retry,
    /// `retry --new-id`.
    RetryNewId,
    Release,
};

/// "none", "retry", "retry-new-id" or "release".
[[nodiscard]] QString queueStepName(QueueStep step);

/// What became of a receipt that no worker will take any more, or not before a person has decided.
struct Conclusion
{
    /// With what to do as advice.
    till::ReceiptResult result;
    QueueStep next = QueueStep::None;
};

[[nodiscard]] Conclusion conclusionOf(queue::Store& store, const queue::Entry& entry);

/// The result in a line of JSON that toJsonLine() has written. The verdict and the advice are not in it.
[[nodiscard]] till::ReceiptResult resultIn(const QJsonObject& line);

/// The result of a finished receipt as toJsonLine() has written it, with what to do in the queue as `next`.
[[nodiscard]] QJsonObject inQueue(QJsonObject line);

/// The line of JSON for a conclusion.
[[nodiscard]] QByteArray toJsonLine(const Conclusion& conclusion);

} // namespace frhost
