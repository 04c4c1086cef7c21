#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

Json payingAgent(const std::string& phone)
{
    return {{"type", "paying_agent"}, {"paying_agent", {{"phones", {phone}}}}};
}

std::vector<Row> supplierRows()
{
    return {
        {"supplier_info that is not an object", 'd', item + "/supplier_info", 5,
            refused("ObjectExpected: #/receipt.items[0].supplier_info")},
        {"supplier's phones that are not an array", 'd', item + "/supplier_info",
            {{"phones", "+79990000000"}}, refused("ArrayExpected: #/receipt.items[0].supplier_info.phones")},
        {"101 phones of a supplier", '?', item + "/supplier_info", {{"phones", Json(101, "+79990000000")}},
            refused("TooManyItems: #/receipt.items[0].supplier_info.phones")},
        {"supplier's phone of 18 digits after the plus", 'd', item + "/supplier_info",
            {{"phones", {"+123456789012345678"}}}, accepted()},
        {"supplier's phone of 19 digits after the plus", 'd', item + "/supplier_info",
            {{"phones", {"+1234567890123456789"}}},
            refused("PatternMismatch: #/receipt.items[0].supplier_info.phones[0]")},
        {"supplier's phone of 17 digits", 'd', item + "/supplier_info", {{"phones", {"12345678901234567"}}},
            accepted()},
        {"supplier's phone of 18 digits", 'd', item + "/supplier_info", {{"phones", {"123456789012345678"}}},
            refused("PatternMismatch: #/receipt.items[0].supplier_info.phones[0]")},
        {"supplier's phone with brackets", '?', item + "/supplier_info", {{"phones", {"8(999)000-00-00"}}},
            refusedInOlder("PatternMismatch: #/receipt.items[0].supplier_info.phones[0]")},
    };
}

} // namespace

Json agentReceipt()
{
    const Json ofAgent = changed(goodReceipt(), item + "/agent_info", payingAgent("+79990000000"));
    return changed(ofAgent, item + "/supplier_info", {{"phones", {"+79990000000"}}});
}

std::vector<Row> agentRows()
{
    std::vector<Row> rows{
        {"an unknown type of agent", 'd', item + "/agent_info/type", "broker",
            refused("NotInEnumeration: #/receipt.items[0].agent_info.type")},
        {"agent's phone of 17 characters", 'd', item + "/agent_info", payingAgent("8(999)000-00-00xx"),
            accepted()},
        {"agent's phone of 18 characters after the plus", 'd', item + "/agent_info",
            payingAgent("+123456789012345678"), accepted()},
        {"an empty phone of an agent", 'd', item + "/agent_info", payingAgent(""), accepted()},
        {"agent's phone of 18 characters", 'd', item + "/agent_info", payingAgent("123456789012345678"),
            refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
        {"agent's phone of 19 characters after the plus", 'd', item + "/agent_info",
            payingAgent("+1234567890123456789"),
            refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
        {"agent's phone with a space", 'd', item + "/agent_info", payingAgent("8 999 000 00 00"),
            refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
        {"agent's phone with a backslash", 'd', item + "/agent_info", payingAgent("8\\999"),
            refusedInNewer("PatternMismatch: #/receipt.items[0].agent_info.paying_agent.phones[0]")},
        {"an agent without type", 'd', item + "/agent_info/type", "absent",
            refused("PropertyRequired: #/receipt.items[0].agent_info.type")},
    };
    for (const std::string who : {"paying_agent", "receive_payments_operator", "money_transfer_operator"}) {
        const std::string pointer = item + "/agent_info/" + who;
        const std::string field = "#/receipt.items[0].agent_info." + who;
        rows.push_back(
            {who + " that is not an object", '?', pointer, 5, refusedInNewer("ObjectExpected: " + field)});
        rows.push_back({who + " whose phones are not an array", '?', pointer, {{"phones", "+79990000000"}},
            refusedInNewer("ArrayExpected: " + field + ".phones")});
        rows.push_back({who + " with a long phone", 'd', pointer, {{"phones", {"123456789012345678"}}},
            refusedInNewer("PatternMismatch: " + field + ".phones[0]")});
    }
    for (const Row& row : supplierRows())
        rows.push_back(row);
    return rows;
}

} // namespace editions
