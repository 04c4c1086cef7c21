#include "till/receipts/receiptqueue.h"

#include "till/error.h"
#include "till/text.h"

#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>

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

SeenId seenId(const QString& id, int file, int line)
{
    SeenId seen{{}, file, line};
    const QByteArray digest = QCryptographicHash::hash(id.toUtf8(), QCryptographicHash::Blake2s_128);
    std::memcpy(seen.digest.data(), digest.constData(), seen.digest.size());
    return seen;
}

QString place(const QString& file, int line)
{
    return u"%1:%2"_s.arg(file, QString::number(line));
}

QString described(const QString& file, int line, const ReceiptProblem& problem)
{
    const QString at = place(file, line + problem.lineOffset);
    return problem.pointer.isEmpty() ? u"%1: %2"_s.arg(at, problem.rule)
                                     : u"%1: %2: %3"_s.arg(at, problem.pointer, problem.rule);
}

} // namespace

ReceiptQueue::ReceiptQueue(const QStringList& fileNames)
{
    for (const QString& name : fileNames)
        files.push_back(std::make_unique<ReceiptFile>(name));
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
        RawReceipt raw;
        const int before = receiptCount;
        while (problemCount < maxProblems && files[i]->next(raw)) {
            ++receiptCount;
            const auto parsed = parser.parse(raw.text);
            if (const auto* problem = std::get_if<ReceiptProblem>(&parsed))
                add(described(files[i]->name(), raw.line, *problem));
            else
                ids.push_back(seenId(
                    std::get<QJsonObject>(parsed).value(u"id"_s).toString(), static_cast<int>(i), raw.line));
        }
        if (receiptCount == before)
            add(Text::tr("%1: the file contains no receipt").arg(files[i]->name()));
    }

    std::sort(ids.begin(), ids.end());
    for (std::size_t i = 1; i < ids.size(); ++i) {
        if (ids[i].digest == ids[i - 1].digest)
            add(Text::tr("%1: /id: the same id is used at %2; the service would treat the second receipt as "
                         "a repeat of the first")
                    .arg(place(files[static_cast<std::size_t>(ids[i].file)]->name(), ids[i].line),
                        place(files[static_cast<std::size_t>(ids[i - 1].file)]->name(), ids[i - 1].line)));
    }
    return problems;
}

std::optional<QJsonObject> ReceiptQueue::readAgain(ReceiptFile& file, RawReceipt& raw) const
{
    const auto fail = [&] {
        throw Error(
            Problem::Setup, Text::tr("%1: the file has changed since it was checked; the rest was not sent")
                                .arg(file.name()));
    };
    try {
        if (!file.next(raw))
            return std::nullopt;
    } catch (const Error&) {
        fail();
    }
    const auto parsed = parser.parse(raw.text);
    if (!std::holds_alternative<QJsonObject>(parsed))
        fail();
    return std::get<QJsonObject>(parsed);
}

void ReceiptQueue::forEach(const std::function<bool(const QueuedReceipt&)>& handle)
{
    for (const auto& file : files) {
        file->rewind();
        RawReceipt raw;
        while (const auto json = readAgain(*file, raw)) {
            if (!handle({file->name(), raw.line, toReceipt(*json)}))
                return;
        }
    }
}

} // namespace till
