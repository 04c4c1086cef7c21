#include "till/receipts/receiptfile.h"

#include "till/error.h"
#include "till/text.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

// About half a million receipts.
constexpr qint64 maxCopySize = 256 * 1024 * 1024;

// Follows JSON text far enough to see whether all brackets are closed.
class Brackets
{
public:
    void read(const QByteArray& text)
    {
        for (const char c : text) {
            if (escaped)
                escaped = false;
            else if (inString && c == '\\')
                escaped = true;
            else if (c == '"')
                inString = !inString;
            else if (!inString && (c == '{' || c == '['))
                ++depth;
            else if (!inString && (c == '}' || c == ']'))
                --depth;
        }
    }
    [[nodiscard]] bool areOpen() const { return depth > 0 || inString; }

private:
    int depth = 0;
    bool inString = false;
    bool escaped = false;
};

bool isBlank(const QByteArray& line)
{
    return line.trimmed().isEmpty();
}

// A name must not begin a line of its own in the messages, which may have several.
QString shown(QString name)
{
    return name.replace(u'\n', QChar::ReplacementCharacter);
}

std::unique_ptr<QFile> opened(const QString& name)
{
    auto file = std::make_unique<QFile>(name);
    const bool isOpen =
        name == u"-"_s ? file->open(stdin, QIODevice::ReadOnly) : file->open(QIODevice::ReadOnly);
    if (!isOpen)
        throw Error(Problem::Receipt, Text::tr("%1: %2").arg(shown(name), file->errorString()));
    return file;
}

std::unique_ptr<QIODevice> spooled(const QString& name, QFile& source)
{
    auto copy = std::make_unique<QTemporaryFile>();
    bool isGood = copy->open();
    while (isGood) {
        const QByteArray part = source.read(64 * 1024);
        if (part.isEmpty())
            break;
        if (copy->pos() + part.size() > maxCopySize)
            throw Error(Problem::Receipt,
                Text::tr(
                    "%1: more than 256 MiB, the most that is read from standard input or a pipe. Nothing "
                    "was sent. Put the receipts into a file.")
                    .arg(shown(name)));
        isGood = copy->write(part) == part.size();
    }
    if (!isGood || !copy->seek(0))
        throw Error(
            Problem::Receipt, Text::tr("%1: cannot be copied: %2").arg(shown(name), copy->errorString()));
    if (source.error() != QFileDevice::NoError)
        throw Error(Problem::Receipt, Text::tr("%1: %2").arg(shown(name), source.errorString()));
    return copy;
}

} // namespace

ReceiptFile::ReceiptFile(const QString& name)
    : fileName(name)
{
    std::unique_ptr<QFile> file = opened(name);
    if (name != u"-"_s && QFileInfo(name).isFile())
        device = std::move(file);
    else
        device = spooled(name, *file);
}

bool ReceiptFile::next(RawReceipt& receipt)
{
    QByteArray text;
    do {
        text = readLine();
        if (atEnd && isBlank(text))
            return false;
    } while (isBlank(text));

    receipt.line = line;
    Brackets brackets;
    brackets.read(text);
    const bool overSeveralLines = first && brackets.areOpen();
    while (overSeveralLines && brackets.areOpen() && !atEnd) {
        const QByteArray more = readLine();
        brackets.read(more);
        text += more;
        if (text.size() > maxReceiptSize)
            fail(receipt.line, Text::tr("a receipt may not be larger than 16 MiB"));
    }
    while (overSeveralLines && !atEnd) {
        if (!isBlank(readLine()))
            fail(line, Text::tr("only the single receipt of a file may span several lines; put each receipt "
                                "on one line"));
    }
    first = false;
    receipt.text = text;
    return true;
}

void ReceiptFile::rewind()
{
    device->seek(0);
    line = 0;
    atEnd = false;
    first = true;
}

QByteArray ReceiptFile::readLine()
{
    ++line;
    QByteArray text;
    char part[16 * 1024];
    while (!text.endsWith('\n') && text.size() <= maxReceiptSize) {
        const qint64 size = device->readLine(part, sizeof part);
        if (size <= 0)
            break;
        text.append(part, size);
    }
    if (text.isEmpty()) {
        atEnd = true;
        if (const auto* file = qobject_cast<QFileDevice*>(device.get());
            file && file->error() != QFileDevice::NoError)
            fail(line, file->errorString());
    }
    if (text.size() > maxReceiptSize)
        fail(line, Text::tr("a receipt may not be larger than 16 MiB"));
    if (line == 1 && text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    return text;
}

void ReceiptFile::fail(int atLine, const QString& what) const
{
    throw Error(Problem::Receipt, u"%1:%2: %3"_s.arg(shown(fileName), QString::number(atLine), what));
}

} // namespace till
