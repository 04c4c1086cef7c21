#include "till/database/engine.h"

#include "till/database/postgresengine.h"
#include "till/database/sqliteengine.h"

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

constexpr auto servicePrefix = "postgresql:service="_L1;

} // namespace

bool isOnServer(const QString& place)
{
    return place.startsWith(servicePrefix);
}

std::unique_ptr<Engine> engineFor(const QString& place)
{
    if (isOnServer(place))
        return std::make_unique<PostgresEngine>(place.sliced(servicePrefix.size()));
    return std::make_unique<SqliteEngine>(place);
}

} // namespace till
