#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>

namespace till {

/// The largest receipt that is read, in bytes: 16 MiB.
inline constexpr qsizetype maxReceiptSize = 16 * 1024 * 1024;

/// The text of one receipt and where it begins.
struct RawReceipt
{
    QByteArray text;
    /// Counted from 1.
    int line = 0;
};

/// A file of receipts: one JSON object on any number of lines, or JSON Lines. It is read one receipt at a
/// time, whatever its size, and can be read again; input that cannot be read twice (standard input, a pipe)
/// is copied to a temporary file first, and may be up to 256 MiB.
class ReceiptFile
{
public:
    /// "-" is standard input. Throws Error when the file cannot be read, or copied.
    explicit ReceiptFile(const QString& name);

    [[nodiscard]] QString name() const { return fileName; }

    /// The next receipt; false at the end. Throws Error when reading fails, when a receipt
    /// is larger than 16 MiB, and when anything follows a receipt that spans several lines.
    [[nodiscard]] bool next(RawReceipt& receipt);

    /// Back to the first receipt.
    void rewind();

private:
    [[nodiscard]] QByteArray readLine();
    [[noreturn]] void fail(int atLine, const QString& what) const;

    QString fileName;
    std::unique_ptr<QIODevice> device;
    int line = 0;
    bool atEnd = false;
    bool first = true;
};

} // namespace till
