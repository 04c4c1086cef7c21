#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <memory>
#include <variant>

namespace till {

/// What is wrong with the text of a receipt.
struct ReceiptProblem
{
    /// Lines before the faulty one within the text.
    int lineOffset = 0;
    /// JSON pointer to the faulty value; empty for the whole receipt.
    QString pointer;
    /// The rule that is broken and what is expected, for people.
    QString rule;
};

/// The problem with the lines before it in the text of the receipt counted.
[[nodiscard]] ReceiptProblem located(const QByteArray& source, ReceiptProblem problem);

/// Parses the text of one receipt and checks it against the published JSON Schema. Beyond the schema, a key
/// that occurs twice in one object and excessive nesting are errors.
class ReceiptParser
{
public:
    ReceiptParser();
    ~ReceiptParser();
    Q_DISABLE_COPY_MOVE(ReceiptParser)

    /// `text` is one JSON object in UTF-8 with any white space around it.
    [[nodiscard]] std::variant<QJsonObject, ReceiptProblem> parse(const QByteArray& text) const;

private:
    class Schema;

    std::unique_ptr<const Schema> schema;
};

} // namespace till
