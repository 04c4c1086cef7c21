#include "tests/queue/power/judgement.h"

#include "tests/queue/store/testplace.h"
#include "till/error.h"

#include <QDir>
#include <QFile>

#include <set>

using namespace Qt::Literals::StringLiterals;

namespace power {

namespace {

constexpr Remains manners[] = {Remains::Any, Remains::UpToOne, Remains::Any, Remains::SomeFiles,
    Remains::Nothing, Remains::LastInPart, Remains::Everything};

// Where most is at stake, every manner is tried at once.
bool isBeforeSync(const Requests& requests, std::size_t position)
{
    if (position + 1 >= requests.size())
        return false;
    const Request::Kind next = requests[position + 1].kind;
    return next == Request::Kind::Sync || next == Request::Kind::SyncFolder;
}

// Those that follow one another and are different.
std::vector<QByteArray> promisesOf(const Requests& requests)
{
    std::vector<QByteArray> promises;
    for (const Request& request : requests) {
        if (request.kind == Request::Kind::Promise && (promises.empty() || promises.back() != request.bytes))
            promises.push_back(request.bytes);
    }
    return promises;
}

void write(const QString& folder, const Disk::Files& files)
{
    const QDir dir(folder);
    for (const QString& name : dir.entryList(QDir::Files))
        QFile::remove(dir.filePath(name));
    for (const auto& [name, content] : files) {
        QFile file(dir.filePath(QFile::decodeName(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            throw std::runtime_error("an image cannot be written");
    }
}

// What SQLite must not read does not make an image another one.
std::size_t hashOf(const Disk::Files& files)
{
    std::size_t hash = 0;
    for (const auto& [name, content] : files) {
        if (!name.endsWith("-shm"))
            hash = qHashMulti(hash, name, content);
    }
    return hash;
}

// The first line that only one of them has.
QString difference(const QByteArray& promised, const QByteArray& found)
{
    const QList<QByteArray> before = promised.split('\n');
    const QList<QByteArray> after = found.split('\n');
    for (const QByteArray& line : before) {
        if (!after.contains(line))
            return u"lacks %1"_s.arg(QString::fromUtf8(line));
    }
    for (const QByteArray& line : after) {
        if (!before.contains(line))
            return u"has %1"_s.arg(QString::fromUtf8(line));
    }
    return u"is in another order"_s;
}

class Judge
{
public:
    Judge(const Requests& usedRequests, const Scenario& usedScenario, const Trial& usedTrial)
        : requests(usedRequests)
        , scenario(usedScenario)
        , trial(usedTrial)
        , promises(promisesOf(requests))
    {
    }

    Verdict verdict()
    {
        for (unsigned round = 0; verdictSoFar.images < trial.images && !isEnough(); ++round) {
            const int before = verdictSoFar.images;
            cutEverywhere(round);
            if (verdictSoFar.images == before)
                throw std::logic_error("there are no further images");
        }
        return verdictSoFar;
    }

private:
    bool isEnough() const { return verdictSoFar.problems.size() >= trial.mostProblems; }

    void cutEverywhere(unsigned round)
    {
        Disk disk(trial.lies);
        std::size_t known = 0;
        verdictSoFar.moments = 0;
        for (std::size_t position = 0; position < requests.size() && !isEnough(); ++position) {
            const Request& request = requests[position];
            disk.take(request);
            if (request.kind == Request::Kind::Promise &&
                (known == 0 || promises[known - 1] != request.bytes))
                ++known;
            ++verdictSoFar.moments;
            const std::size_t tried = round == 0 && isBeforeSync(requests, position) ? std::size(manners) : 1;
            for (std::size_t i = 0; i < tried; ++i) {
                const Remains remains = manners[(position + round + i) % std::size(manners)];
                cut(disk, position, round, remains, known);
            }
        }
    }

    void cut(const Disk& disk, std::size_t position, unsigned round, Remains remains, std::size_t known)
    {
        Chance chance(static_cast<unsigned>(position) * 1000 + round);
        const Disk::Files files = disk.afterCut(remains, chance);
        if (!seen.insert({hashOf(files), known}).second)
            return;
        ++verdictSoFar.images;
        write(folder.path(), files);
        if (const QString problem = problemOf(known); !problem.isEmpty())
            verdictSoFar.problems << u"request %1 of %2, round %3, manner %4: %5"_s.arg(
                QString::number(position), QString::number(requests.size()), QString::number(round),
                QString::number(static_cast<int>(remains)), problem);
    }

    // An operation that had not returned has happened as a whole or not at all.
    QString problemOf(std::size_t known) const
    {
        try {
            const QByteArray found = scenario.contentAfterCut(folder.path());
            const bool isKept = known > 0 && found == promises[known - 1];
            const bool isNext = known < promises.size() && found == promises[known];
            if (isKept || isNext)
                return {};
            return difference(promises[known > 0 ? known - 1 : 0], found);
        } catch (const till::Error& error) {
            return error.message();
        }
    }

    const Requests& requests;
    const Scenario& scenario;
    const Trial& trial;
    const std::vector<QByteArray> promises;
    QTemporaryDir folder{folderTemplate()};
    std::set<std::pair<std::size_t, std::size_t>> seen;
    Verdict verdictSoFar;
};

} // namespace

Requests recordingOf(const Scenario& scenario)
{
    const QTemporaryDir folder(folderTemplate());
    RecordingVfs vfs;
    scenario.run(folder.path(), vfs);
    return vfs.requests();
}

Verdict verdictOn(const Requests& requests, const Scenario& scenario, const Trial& trial)
{
    return Judge(requests, scenario, trial).verdict();
}

} // namespace power
