#include "tests/queue/power/disk.h"

#include <algorithm>

namespace power {

namespace {

enum class Fate
{
    Done,
    Lost,
    InPart,
};

void put(QByteArray& content, qsizetype offset, QByteArrayView bytes)
{
    if (const qsizetype end = offset + bytes.size(); content.size() < end)
        content.append(end - content.size(), '\0');
    std::copy(bytes.begin(), bytes.end(), content.begin() + offset);
}

QByteArray garbage(qsizetype length, Chance& chance)
{
    QByteArray bytes(length, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(chance.below(256)); });
    return bytes;
}

// A disk writes sector by sector, in any order; the one that it is writing may become anything.
void putInPart(QByteArray& content, const Request& write, Chance& chance)
{
    const qsizetype sector = chance.isOneIn(2) ? 512 : 4096;
    const qsizetype first = write.offset / sector;
    const qsizetype count = (write.offset + write.bytes.size() - 1) / sector - first + 1;
    const qsizetype torn = chance.below(count);
    const bool isInOrder = !chance.isOneIn(3);
    for (qsizetype number = 0; number < count; ++number) {
        const qsizetype begin = std::max((first + number) * sector, write.offset);
        const qsizetype end = std::min((first + number + 1) * sector, write.offset + write.bytes.size());
        const bool isWritten = isInOrder ? number < torn : chance.isOneIn(2);
        if (number == torn && chance.isOneIn(2))
            put(content, begin, garbage(end - begin, chance));
        else if (isWritten)
            put(content, begin, QByteArrayView(write.bytes).sliced(begin - write.offset, end - begin));
    }
}

void apply(QByteArray& content, const Request& request)
{
    if (request.kind == Request::Kind::Truncate)
        content.truncate(request.offset);
    else
        put(content, request.offset, request.bytes);
}

} // namespace

// Decides what becomes of each request that is pending.
class Disk::Cut
{
public:
    Cut(Remains usedRemains, const std::vector<qsizetype>& orders, Chance& usedChance)
        : remains(usedRemains)
        , chance(usedChance)
        , last(orders.empty() ? 0 : orders.back())
        , broken(orders.empty() ? 0 : orders[static_cast<std::size_t>(chance.below(std::ssize(orders)))])
        , keptFiles(chance.below(1 << 16))
        , keptOf10(1 + chance.below(9))
    {
    }

    Fate fateOf(const Pending& pending)
    {
        switch (remains) {
        case Remains::Nothing:
            return Fate::Lost;
        case Remains::Everything:
            return Fate::Done;
        case Remains::LastInPart:
            return pending.order == last ? Fate::InPart : Fate::Done;
        case Remains::UpToOne:
            return pending.order == broken ? Fate::InPart : pending.order < broken ? Fate::Done : Fate::Lost;
        case Remains::SomeFiles:
            return (keptFiles >> (pending.request.file % 16)) % 2 == 1 ? Fate::Done : Fate::Lost;
        case Remains::Any:
            break;
        }
        if (chance.isOneIn(8))
            return Fate::InPart;
        return chance.below(10) < keptOf10 ? Fate::Done : Fate::Lost;
    }

    // The length of a file may have been noted before what was to be written there.
    bool isLengthKept() { return remains == Remains::Any && chance.isOneIn(2); }

    void settle(QByteArray& content, const Pending& pending)
    {
        const Request& request = pending.request;
        const Fate fate = fateOf(pending);
        if (fate == Fate::Done)
            apply(content, request);
        else if (fate == Fate::InPart && request.kind == Request::Kind::Write)
            putInPart(content, request, chance);
        if (request.kind == Request::Kind::Write && isLengthKept())
            put(content, std::max(content.size(), request.offset + request.bytes.size()), {});
    }

private:
    Remains remains;
    Chance& chance;
    qsizetype last;
    qsizetype broken;
    qsizetype keptFiles;
    qsizetype keptOf10;
};

Disk::Disk(Lies usedLies)
    : lies(std::move(usedLies))
{
}

void Disk::take(const Request& request)
{
    ++taken;
    switch (request.kind) {
    case Request::Kind::Create:
        files[request.file].name = request.name;
        names[request.name].pending.push_back({taken, request});
        return;
    case Request::Kind::Delete:
        names[request.name].pending.push_back({taken, request});
        return;
    case Request::Kind::Write:
    case Request::Kind::Truncate:
        files[request.file].pending.push_back({taken, request});
        return;
    case Request::Kind::Sync:
        if (File& file = files[request.file]; !lies || !lies(file.name)) {
            for (const Pending& pending : file.pending)
                apply(file.content, pending.request);
            file.pending.clear();
        }
        return;
    case Request::Kind::SyncFolder:
        if (lies && lies({}))
            return;
        for (auto& [text, name] : names) {
            if (!name.pending.empty()) {
                const Request& last = name.pending.back().request;
                name.file = last.kind == Request::Kind::Create ? last.file : 0;
                name.pending.clear();
            }
        }
        return;
    case Request::Kind::Share:
        shared[request.name].push_back(request.bytes);
        return;
    case Request::Kind::Promise:
        return;
    }
}

std::vector<qsizetype> Disk::pendingOrders() const
{
    std::vector<qsizetype> orders;
    const auto add = [&](const std::vector<Pending>& pending) {
        for (const Pending& one : pending)
            orders.push_back(one.order);
    };
    for (const auto& [number, file] : files)
        add(file.pending);
    for (const auto& [text, name] : names)
        add(name.pending);
    std::ranges::sort(orders);
    return orders;
}

Disk::Files Disk::afterCut(Remains remains, Chance& chance) const
{
    Cut cut(remains, pendingOrders(), chance);
    Files found;
    for (const auto& [text, name] : names) {
        int number = name.file;
        // Each name is changed in order, whatever becomes of the others.
        for (const Pending& pending : name.pending) {
            if (cut.fateOf(pending) != Fate::Done)
                break;
            number = pending.request.kind == Request::Kind::Create ? pending.request.file : 0;
        }
        if (number == 0)
            continue;
        const File& file = files.at(number);
        QByteArray content = file.content;
        for (const Pending& pending : file.pending)
            cut.settle(content, pending);
        found[text] = content;
    }
    for (const auto& [text, contents] : shared) {
        if (const qsizetype any = chance.below(std::ssize(contents) + 1); any < std::ssize(contents))
            found[text] = contents[static_cast<std::size_t>(any)];
    }
    return found;
}

} // namespace power
