#include "tests/emulator/rules/editions.h"

namespace editions {

namespace {

enum class Since
{
    Always,
    Newer,
    Never ///< or no longer
};

struct Name
{
    const char* name;
    Since since;
    char source = 'd';
};

using enum Since;

const Name taxationSystems[] = {{"osn", Always}, {"usn_income", Always}, {"usn_income_outcome", Always},
    {"envd", Always}, {"esn", Always}, {"patent", Always}, {"", Never}, {"OSN", Never}};

const Name vatTypes[] = {{"none", Always}, {"vat0", Always}, {"vat10", Always}, {"vat110", Always},
    {"vat20", Always}, {"vat120", Always}, {"vat5", Newer}, {"vat7", Newer}, {"vat105", Newer},
    {"vat107", Newer}, {"vat22", Newer}, {"vat122", Newer}, {"vat18", Never}, {"vat118", Never}, {"", Never}};

const Name agentTypes[] = {{"bank_paying_agent", Always}, {"bank_paying_subagent", Always},
    {"paying_agent", Always}, {"paying_subagent", Always}, {"attorney", Always}, {"commission_agent", Always},
    {"another", Always}, {"", Never}};

const Name paymentMethods[] = {{"full_prepayment", Always}, {"prepayment", Always}, {"advance", Always},
    {"full_payment", Always}, {"partial_payment", Always}, {"credit", Always}, {"credit_payment", Always},
    {"", Never}};

// Those marked as inferred are named after the kinds of the fiscal data format.
const Name paymentObjects[] = {{"commodity", Always}, {"excise", Always}, {"job", Always},
    {"service", Always}, {"gambling_bet", Always}, {"gambling_prize", Always}, {"lottery", Always},
    {"lottery_prize", Always}, {"intellectual_activity", Always}, {"payment", Always},
    {"agent_commission", Always}, {"composite", Always}, {"another", Always}, {"award", Newer},
    {"property_right", Newer}, {"deposit", Newer}, {"resort_fee", Newer}, {"non-operating_gain", Newer, '?'},
    {"insurance_premium", Newer, '?'}, {"sales_tax", Newer, '?'}, {"expense", Newer, '?'},
    {"pension_insurance_ip", Newer, '?'}, {"pension_insurance", Newer, '?'},
    {"medical_insurance_ip", Newer, '?'}, {"medical_insurance", Newer, '?'}, {"social_insurance", Newer, '?'},
    {"casino_payment", Newer, '?'}, {"", Never}};

Answers answersTo(Since since, const std::string& field)
{
    const std::string wrong = "NotInEnumeration: #/" + field;
    return since == Always ? accepted() : since == Newer ? refusedInOlder(wrong) : refused(wrong);
}

void add(std::vector<Row>& rows, const auto& names, const std::string& pointer, const std::string& field)
{
    for (const Name& name : names)
        rows.push_back(
            {field + " " + name.name, name.source, pointer, name.name, answersTo(name.since, field)});
}

} // namespace

std::vector<Row> nameRows()
{
    const std::string field = "receipt.items[0].";
    std::vector<Row> rows;
    add(rows, taxationSystems, "/receipt/company/sno", "receipt.company.sno");
    add(rows, vatTypes, item + "/vat/type", field + "vat.type");
    add(rows, agentTypes, item + "/agent_info/type", field + "agent_info.type");
    add(rows, paymentMethods, item + "/payment_method", field + "payment_method");
    add(rows, paymentObjects, item + "/payment_object", field + "payment_object");
    return rows;
}

} // namespace editions
