#include "tests/queue/store/testplace.h"

#include "tests/queue/store/postgresserver.h"

using namespace Qt::Literals::StringLiterals;

QString folderTemplate()
{
    const QString memory = u"/dev/shm"_s;
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/queue-XXXXXX"_s;
}

std::vector<PlaceKind> placeKinds()
{
    if (PostgresServer::whyMissing().isEmpty())
        return {PlaceKind::Sqlite, PlaceKind::Postgres};
    return {PlaceKind::Sqlite};
}

std::string placeKindName(const testing::TestParamInfo<PlaceKind>& info)
{
    return info.param == PlaceKind::Sqlite ? "SQLite" : "PostgreSQL";
}

TestPlace::TestPlace(PlaceKind kind)
{
    if (kind == PlaceKind::Sqlite)
        name = folder.emplace(folderTemplate()).filePath(u"queue.db"_s);
    else
        name = PostgresServer::instance().newPlace();
}
