#include "tests/sweep/replies/replygenerator.h"

using nlohmann::json;

namespace {

// Values of every type; among them those that another place of an answer would hold, and the limits of
// numbers.
const std::vector<json> nonsense{nullptr, true, false, 0, 1, -1, 2, 11, 30, 32, 33, 34, 31.6, 5.00, 160.01,
    1e300, 2147483647, 2147483649, 4294967297, 18446744073709551615U, "", " ", "0", "160", "33", "wait",
    "done", "fail", "driver", "null", honest::id, honest::uuid, "ffffffff-ffff-4fff-8fff-ffffffffffff",
    "another-receipt", "11100001002382110", "\n", json::array(), json::object(), json::array({1}),
    json::array({json::object()}), {{"code", 32}}, {{"total", 160}}};

const std::vector<std::string> notJson{"", " ", "null", "true", "0", "\"done\"", "[]", "{}",
    "[{\"status\":\"done\"}]", "{", "<html></html>", "{\"status\":\"done\"", "\xFF\xFE"};

const std::vector<int> codes{0, 1, 2, 10, 11, 12, 13, 14, 20, 21, 30, 31, 32, 33, 34, 40, 41, 50, 502};

std::vector<json::json_pointer> placesIn(const json& answer)
{
    std::vector<json::json_pointer> places;
    const json leaves = answer.flatten();
    for (const auto& [key, value] : leaves.items()) {
        for (json::json_pointer place(key); !place.empty(); place = place.parent_pointer())
            places.push_back(place);
    }
    return places;
}

// One value less or another one.
rc::Gen<json> mutated(const json& answer)
{
    const auto places = placesIn(answer);
    if (places.empty())
        return rc::gen::just(answer);
    return rc::gen::map(
        rc::gen::tuple(rc::gen::elementOf(places), rc::gen::elementOf(nonsense), rc::gen::inRange(0, 4)),
        [answer](const auto& change) {
            const auto& [place, value, kind] = change;
            json result = answer;
            json& parent = result[place.parent_pointer()];
            if (kind == 0 && parent.is_object())
                parent.erase(place.back());
            else
                result[place] = value;
            return result;
        });
}

rc::Gen<json> sometimesMutated(const rc::Gen<json>& answer)
{
    const auto once = rc::gen::mapcat(answer, mutated);
    return rc::gen::weightedOneOf<json>({{4, answer}, {3, once}, {1, rc::gen::mapcat(once, mutated)}});
}

rc::Gen<Reply> replyFrom(const rc::Gen<json>& answer)
{
    const auto status = rc::gen::weightedElement<int>({{9, 200}, {1, 400}, {1, 401}, {1, 500}});
    const auto sound = rc::gen::map(rc::gen::pair(sometimesMutated(answer), status),
        [](const auto& made) { return Reply{.status = made.second, .body = made.first.dump()}; });
    const auto unsound = rc::gen::map(
        rc::gen::elementOf(notJson), [](const std::string& body) { return Reply{.body = body}; });
    return rc::gen::weightedOneOf<Reply>(
        {{16, sound}, {2, unsound}, {1, rc::gen::just(Reply{.isLost = true})}});
}

// Of changing mind, or one answer again and again.
rc::Gen<std::vector<Reply>> repliesFrom(const rc::Gen<json>& answer, int most)
{
    const auto changing = rc::gen::mapcat(rc::gen::inRange(1, most + 1), [=](int count) {
        return rc::gen::container<std::vector<Reply>>(static_cast<std::size_t>(count), replyFrom(answer));
    });
    const auto steady = rc::gen::map(replyFrom(answer),
        [most](const Reply& reply) { return std::vector<Reply>(static_cast<std::size_t>(most), reply); });
    return rc::gen::oneOf(changing, steady);
}

rc::Gen<json> withCode(json (*make)(int))
{
    return rc::gen::map(rc::gen::elementOf(codes), make);
}

} // namespace

rc::Gen<Script> anyScript()
{
    using rc::gen::just;
    const auto sell = rc::gen::weightedOneOf<json>(
        {{5, just(honest::accepted())}, {2, just(honest::known())}, {3, withCode(honest::refused)}});
    const auto report = rc::gen::weightedOneOf<json>({{6, just(honest::done())}, {2, just(honest::waiting())},
        {3, withCode(honest::failed)}, {1, withCode(honest::refused)}});
    // The first token is good, since nothing follows without it.
    const auto tokens = rc::gen::map(repliesFrom(just(honest::token()), 3), [](std::vector<Reply> replies) {
        replies.insert(replies.begin(), replyOf(honest::token()));
        return replies;
    });
    return rc::gen::construct<Script>(tokens, repliesFrom(sell, 4), repliesFrom(report, 8));
}
