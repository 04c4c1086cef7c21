#include "till/sale/failure.h"

#include "till/sale/session.h"

namespace till {

namespace {

NextStep nextStepAfter(Problem problem)
{
    switch (problem) {
    case Problem::Setup:
        return NextStep::Account;
    case Problem::Receipt:
        return NextStep::Correct;
    case Problem::Connection:
        break;
    }
    return NextStep::Rerun;
}

} // namespace

RunFailure failureOf(const Error& error, bool sent)
{
    const auto* ofService = dynamic_cast<const ConnectError*>(&error);
    if (ofService)
        return {ofService->info(), sent, ofService->next()};
    return {ErrorInfo{{}, std::nullopt, error.message()}, sent, nextStepAfter(error.problem())};
}

} // namespace till
