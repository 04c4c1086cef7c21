#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace till {

/// What a person or a script does about a receipt next.
enum class NextStep
{
    None,
    /// Run the same file again, under the same id.
    Rerun,
    /// Correct the receipt, then run it again under the same id.
    Correct,
    /// Sell it under a new id.
    NewId,
    /// Correct the account, the configuration or the machine, then run the same file again.
    Account,
};

/// "none", "rerun", "correct", "new-id" or "account".
[[nodiscard]] QString nextStepName(NextStep step);

/// What one cause means, for three readers.
struct CauseTexts
{
    /// What a message says of it, as in "Cannot reach X: the certificate has expired"; may be empty.
    QString cause;
    /// What the message advises then, a whole sentence.
    QString advice;
    QString cashier;
    QString administrator;
    QString programmer;
};

/// A row of the table of causes, which is in the JSON files of this folder.
struct Cause
{
    /// "service" for the service's codes, "transport" for the transport's causes, "results" for the rest.
    QString kind;
    /// The service's code, the transport's words as the log has them, or a name of our own.
    QStringList names;
    /// What to look for in a text in place of the names; empty for the names themselves.
    QStringList words;
    /// What the user sees instead of a name; may be empty.
    QString seen;
    /// "refused", "unknown", "incomplete", "not-sent", or "looked-up" where the service is asked first.
    QString outcome;
    NextStep next = NextStep::None;
    CauseTexts english;
    CauseTexts russian;
};

/// All rows, in the order of the files.
[[nodiscard]] const QList<Cause>& causes();

/// The row with this name; null when there is none.
[[nodiscard]] const Cause* causeNamed(const QString& name);

/// The row of the transport's cause that these words of its log line mention, of several the first in the
/// table, which goes from the details to the general; null when they mention none.
[[nodiscard]] const Cause* causeOfFailure(const QString& words);

/// The row of the cause that a line of the log or a message mentions: the transport's, in its own words or in
/// those of our messages, or else of several the last; null when it mentions none.
[[nodiscard]] const Cause* causeIn(const QString& text);

/// The texts in the user's language.
[[nodiscard]] const CauseTexts& textsOf(const Cause& cause);

} // namespace till
