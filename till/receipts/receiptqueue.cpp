#include "till/receipts/receiptqueue.h"

#include "till/error.h"
#include "till/receipts/servicelimits.h"
#include "till/text.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstring>
#include <tuple>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr int maxProblems = 10;

// An id by its digest, so that a million receipts can be compared in a few megabytes.
struct SeenId
{
    std::array<char, 16> digest;
    int file;
    int line;

    bool operator<(const SeenId& other) const
    {
        return std::tie(digest, file, line) < std::tie(other.digest, other.file, other.line);
    }
};

QString place(const QString& file, int line)
{
    return u"%1:%2"_s.arg(file, QString::number(line));
}

[[noreturn]] void failChanged(const ReceiptFile& file)
{
    throw Error(Problem::Setup,
        Text::tr("%1: the file has changed since it was checked; the rest was not sent").arg(file.name()));
}

QString described(const QString& file, int line, const ReceiptProblem& problem)
{
    const QString at = place(file, line + problem.lineOffset);
    return problem.pointer.isEmpty() ? u"%1: %2"_s.arg(at, problem.rule)
                                     : u"%1: %2: %3"_s.arg(at, problem.pointer, problem.rule);
}

} // namespace

ReceiptQueue::Digest ReceiptQueue::digestOf(const QByteArray& text)
{
    Digest digest{};
    const QByteArray hash = QCryptographicHash::hash(text, QCryptographicHash::Blake2s_128);
    std::memcpy(digest.data(), hash.constData(), digest.size());
    return digest;
}

ReceiptQueue::ReceiptQueue(const QStringList& fileNames, LimitChecks limitChecks)
    : checks(std::move(limitChecks))
{
    for (const QString& name : fileNames)
        files.push_back({ReceiptFile(name), {}});
    const QString problems = checkAll();
    if (!problems.isEmpty())
        throw Error(Problem::Receipt,
            problems + Text::tr("Nothing was sent. Correct the receipts and run the command again."));
}

QString ReceiptQueue::checkAll()
{
    QString problems;
    int problemCount = 0;
    const auto add = [&](QString problem) {
        // A name in a file must not begin a line of its own.
        if (++problemCount <= maxProblems)
            problems += problem.replace(u'\n', QChar::ReplacementCharacter) + u'\n';
    };

    std::vector<SeenId> ids;
    for (std::size_t i = 0; i < files.size(); ++i) {
        auto& [file, receipts] = files[i];
        RawReceipt raw;
        while (problemCount < maxProblems && file.next(raw)) {
            receipts.push_back(digestOf(raw.text));
            const auto parsed = parser.parse(raw.text);
            if (const auto* problem = std::get_if<ReceiptProblem>(&parsed)) {
                add(described(file.name(), raw.line, *problem));
                continue;
            }
            const auto& receipt = std::get<QJsonObject>(parsed);
            ids.push_back(
                {digestOf(receipt.value(u"id"_s).toString().toUtf8()), static_cast<int>(i), raw.line});
            checkLimits(file.name(), raw, receipt, add);
        }
        if (receipts.empty())
            add(Text::tr("%1: the file contains no receipt").arg(file.name()));
        receiptCount += static_cast<int>(receipts.size());
    }

    std::sort(ids.begin(), ids.end());
    for (std::size_t i = 1; i < ids.size(); ++i) {
        if (ids[i].digest == ids[i - 1].digest)
            add(Text::tr("%1: /id: the same id is used at %2; the service would treat the second receipt as "
                         "a repeat of the first")
                    .arg(place(files[static_cast<std::size_t>(ids[i].file)].file.name(), ids[i].line),
                        place(
                            files[static_cast<std::size_t>(ids[i - 1].file)].file.name(), ids[i - 1].line)));
    }
    return problems;
}

void ReceiptQueue::checkLimits(const QString& file, const RawReceipt& raw, const QJsonObject& receipt,
    const std::function<void(const QString&)>& addError)
{
    for (const ReceiptProblem& problem : beyondServiceLimits(receipt)) {
        const QString text = described(file, raw.line, located(raw.text, problem));
        if (checks.areErrors)
            addError(text);
        else if (checks.warn && ++warningCount <= maxProblems)
            checks.warn(Text::tr("%1. The service may refuse the receipt.").arg(text));
    }
}

// A file that can no longer be read as it was has changed, too.
bool ReceiptQueue::readAgain(CheckedFile& checked, RawReceipt& raw)
{
    try {
        return checked.file.next(raw);
    } catch (const Error&) {
        failChanged(checked.file);
    }
}

QJsonObject ReceiptQueue::readChecked(CheckedFile& checked, const Digest& digest, RawReceipt& raw) const
{
    if (!readAgain(checked, raw) || digestOf(raw.text) != digest)
        failChanged(checked.file);
    return std::get<QJsonObject>(parser.parse(raw.text));
}

void ReceiptQueue::forEach(const std::function<bool(const QueuedReceipt&)>& handle)
{
    for (CheckedFile& checked : files) {
        checked.file.rewind();
        RawReceipt raw;
        for (const Digest& digest : checked.receipts) {
            const QJsonObject json = readChecked(checked, digest, raw);
            if (!handle({checked.file.name(), raw.line, toReceipt(json), json}))
                return;
        }
        if (readAgain(checked, raw))
            failChanged(checked.file);
    }
}

} // namespace till
