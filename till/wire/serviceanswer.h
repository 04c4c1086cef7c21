#pragma once

#include "till/wire/servicecodes.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>

namespace till {

/// One answer of the service, read once. What is not of its type counts as missing.
struct ServiceAnswer
{
    /// Whether there was an answer at all: a JSON object that is not empty.
    bool arrived = false;
    QString uuid;
    QString externalId;
    /// "wait", "done" or "fail"; empty when missing.
    QString status;
    /// Whether the answer has an "error" that is neither null nor an empty object.
    bool hasError = false;
    /// The error object's "code"; none when there is no error, or its code is not an integral number that
    /// fits an int.
    std::optional<ServiceCode> errorCode;
    QString errorType;
    /// The service's own words, with credentials that they repeat masked; empty when there are none.
    QString errorText;
    /// The error's identifier, for which the service's support asks; empty when there is none.
    QString errorId;
    /// When the service wrote the answer, in Moscow time; invalid when it does not say so.
    QDateTime time;
    /// The fiscal data of a finished document; empty when missing.
    QVariantMap payload;
    /// Whether there is a "token": a text that is not blank and has no control characters.
    bool holdsToken = false;

    /// Whether the document is finished, and failed. An error that concerns the request (an expired token)
    /// may carry the status "fail" too, but says nothing about the document.
    [[nodiscard]] bool saysFailed() const;
};

[[nodiscard]] ServiceAnswer readAnswer(const QVariant& body);

/// What went over the wire for one receipt.
struct WireRecord
{
    /// Whether any part of the receipt may have reached the service in any attempt, whatever came back.
    bool receiptSent = false;
    /// Whether a driver registers the receipt without a service; then there is no answer here.
    bool isLocal = false;
    /// The answer to the receipt; the last one when it was sent more than once.
    ServiceAnswer registration;
    /// The last answer to a question about the document.
    ServiceAnswer status;
    /// The last answer to a request for a token.
    ServiceAnswer token;
    /// The code of the last answer of any kind; none when that had no error or did not arrive.
    std::optional<ServiceCode> lastErrorCode;
    /// Whether the last request was answered; none when there was no request.
    std::optional<bool> lastAnswered;
    /// Whether a request was given up because the service had rejected one new token after the other.
    bool tokensRejected = false;
};

} // namespace till
