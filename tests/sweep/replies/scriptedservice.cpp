#include "tests/sweep/replies/scriptedservice.h"

namespace {

Call callOf(const std::string& request)
{
    if (request.starts_with("GET "))
        return Call::Report;
    return request.find("/getToken") < request.find('\n') ? Call::Token : Call::Sell;
}

} // namespace

ScriptedService::ScriptedService(const Script& script)
    : rest(script)
    , server([this](Peer& peer, const std::string& request) { serve(peer, request); })
{
}

std::vector<GivenReply> ScriptedService::given() const
{
    const std::scoped_lock lock(guard);
    return replies;
}

void ScriptedService::serve(Peer& peer, const std::string& request)
{
    const Call call = callOf(request);
    Reply reply{.isLost = true};
    {
        const std::scoped_lock lock(guard);
        std::vector<Reply>& left = call == Call::Token  ? rest.token
                                   : call == Call::Sell ? rest.sell
                                                        : rest.report;
        if (!left.empty()) {
            reply = left.front();
            left.erase(left.begin());
        }
        replies.push_back({call, reply});
    }
    if (reply.isLost)
        peer.close();
    else
        peer.answer(reply.status, reply.body);
}
