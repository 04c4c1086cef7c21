#include "till/receipts/receiptstream.h"

#include "till/error.h"
#include "till/text.h"

#include <cerrno>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

[[noreturn]] void fail(int line, const QString& what)
{
    throw Error(Problem::Receipt, u"-:%1: %2"_s.arg(QString::number(line), what));
}

} // namespace

std::optional<RawReceipt> ReceiptStream::next()
{
    while (true) {
        const qsizetype end = unread.indexOf('\n');
        if (end < 0 && !atEnd) {
            atEnd = !readMore();
            continue;
        }
        if (end < 0 && unread.isEmpty())
            return std::nullopt;
        const RawReceipt receipt{end < 0 ? unread : unread.first(end), ++line};
        unread.remove(0, end < 0 ? unread.size() : end + 1);
        if (!receipt.text.trimmed().isEmpty())
            return receipt;
    }
}

bool ReceiptStream::readMore()
{
    if (unread.size() > maxReceiptSize)
        fail(line + 1, Text::tr("a receipt may not be larger than 16 MiB"));
    char part[64 * 1024];
    ssize_t size = 0;
    do {
        size = ::read(descriptor, part, sizeof part);
    } while (size < 0 && errno == EINTR);
    if (size < 0)
        fail(line + 1, qt_error_string(errno));
    unread.append(part, size);
    return size > 0;
}

} // namespace till
