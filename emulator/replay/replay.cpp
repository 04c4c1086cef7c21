#include "emulator/replay/replay.h"

#include "emulator/protocol/errors.h"
#include "emulator/protocol/replies.h"
#include "emulator/replay/namedfields.h"
#include "emulator/service/record.h"

namespace emulator {

Replay::Replay(const Recording& recording, Store& usedStore, Clock usedClock)
    : store(usedStore)
    , clock(std::move(usedClock))
{
    for (const RecordedCall& call : recording)
        answers[call.key].push_back(call.answer);
}

Answer Replay::answer(const Request& request)
{
    const Call call = readCall(request, true);
    const Answer answer = next(request);
    sqlite::Transaction transaction = store.transaction();
    if (call.endpoint == Endpoint::Sell)
        store.countRequest(call.group, call.externalId, call.operation);
    Exchange exchange = recordOf(call, request, answer, nullptr);
    exchange.at = clock();
    store.addExchange(exchange);
    if (call.endpoint == Endpoint::Sell)
        noteRefusal(call, exchange, answer.reply);
    transaction.commit();
    useUp(request);
    if (listener)
        listener(exchange);
    return answer;
}

void Replay::noteRefusal(const Call& call, const Exchange& exchange, const Reply& reply)
{
    const Json body = parseShallow(reply.body);
    if (!textOf(body, "uuid").empty()) {
        store.refusals().forget(call.group, call.externalId);
    } else if (exchange.code) {
        const bool invalid = exchange.code == toNumber(ErrorCode::InvalidReceipt);
        store.refusals().add(refusalOf(
            call, exchange, invalid ? fieldsNamedIn(textOf(valueOf(body, "error"), "text")) : Json::array()));
    }
}

Answer Replay::next(const Request& request) const
{
    const std::string key = keyOf(request);
    const auto found = answers.find(key);
    if (found == answers.end()) {
        const std::string what = key.empty() ? request.method + " " + request.path : key;
        return {.reply = errorReply(
                    Endpoint::Unknown, serviceError(ErrorCode::Internal), clock(), exhausted(what))};
    }
    return found->second.front();
}

void Replay::useUp(const Request& request)
{
    const auto found = answers.find(keyOf(request));
    if (found == answers.end())
        return;
    found->second.pop_front();
    if (found->second.empty())
        answers.erase(found);
}

std::string Replay::exhausted(const std::string& what) const
{
    constexpr std::size_t most = 10;
    std::string left;
    std::size_t named = 0;
    for (const auto& [key, queue] : answers) {
        if (named++ == most) {
            left += ", …";
            break;
        }
        left += (left.empty() ? "" : ", ") + key + " (" + std::to_string(queue.size()) + ")";
    }
    return "В записи больше нет ответа на вызов " + what + ". Осталось: " + (left.empty() ? "ничего" : left);
}

} // namespace emulator
