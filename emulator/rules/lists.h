#pragma once

#include <string>
#include <vector>

namespace emulator {

/// The names that the service accepts. They can be configured because the law changes them now and then.
struct Lists
{
    std::vector<std::string> operations{
        "sell", "sell_refund", "sell_correction", "buy", "buy_refund", "buy_correction"};
    std::vector<std::string> taxationSystems{
        "osn", "usn_income", "usn_income_outcome", "envd", "esn", "patent"};
    /// vat18 and vat118 have been refused since 2019.
    std::vector<std::string> vatTypes{"none", "vat0", "vat10", "vat20", "vat110", "vat120"};
    std::vector<std::string> agentTypes{"bank_paying_agent", "bank_paying_subagent", "paying_agent",
        "paying_subagent", "attorney", "commission_agent", "another"};
    std::vector<std::string> paymentMethods{"full_prepayment", "prepayment", "advance", "full_payment",
        "partial_payment", "credit", "credit_payment"};
    std::vector<std::string> paymentObjects{"commodity", "excise", "job", "service", "gambling_bet",
        "gambling_prize", "lottery", "lottery_prize", "intellectual_activity", "payment", "agent_commission",
        "composite", "another"};
};

} // namespace emulator
