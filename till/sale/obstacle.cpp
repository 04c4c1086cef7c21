#include "till/sale/obstacle.h"

#include "host/log/secrets.h"
#include "till/text.h"

namespace till {

namespace {

namespace secrets = hostruntime::secrets;

} // namespace

Obstacle obstacleIn(const QString& failure)
{
    const Cause* cause = causeOfFailure(failure);
    if (cause && !textsOf(*cause).cause.isEmpty())
        return {textsOf(*cause).cause, textsOf(*cause).advice, cause->next};
    return {secrets::masked(failure, secrets::Audience::Anyone), Text::tr("Check url and the network.")};
}

} // namespace till
