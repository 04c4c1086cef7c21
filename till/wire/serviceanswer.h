#pragma once

#include <QString>
#include <QVariant>

#include <optional>

namespace frhost {

/// One answer of the service, as far as it tells what became of a receipt.
struct ServiceAnswer
{
    /// Whether there was an answer at all: a JSON object that is not empty.
    bool arrived = false;
    QString uuid;
    QString externalId;
    /// "wait", "done" or "fail"; empty when missing.
    QString status;
    /// The error object's "code"; none when there is no error or it has no code.
    std::optional<int> errorCode;
    QString errorType;
    /// The service's own words, without what it may repeat of password and token; empty when there are none.
    QString errorText;

    /// Whether the document is finished, and failed. An error that concerns the question (an expired token)
    /// may carry the status "fail" too and is none.
    [[nodiscard]] bool saysFailed() const;
};

[[nodiscard]] ServiceAnswer readAnswer(const QVariant& body);

/// What went over the wire for one receipt.
struct Exchange
{
    /// Whether any part of the receipt may have reached the service in one of the tries, whatever came back.
    bool receiptSent = false;
    /// The answer to the receipt, the last one when it was sent more than once.
    ServiceAnswer registration;
    /// The last answer to a question about the document.
    ServiceAnswer status;
    /// The last answer to a request for a token.
    ServiceAnswer token;
    /// The code of the last answer, whatever it answered; none when that had no error or did not arrive.
    std::optional<int> lastErrorCode;
    /// Whether the last request was answered; none when there was no request.
    std::optional<bool> lastAnswered;
};

} // namespace frhost
