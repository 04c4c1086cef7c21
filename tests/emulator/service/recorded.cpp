#include "tests/emulator/service/recorded.h"

#include <regex>

namespace recorded {

namespace {

std::string withoutVariables(std::string text)
{
    const std::pair<const char*, const char*> variables[] = {
        {R"([0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-8[0-9a-f]{3}-[0-9a-f]{12})", "UUID"},
        {R"("fiscal_document_attribute":[2-4][0-9]{9})", R"("fiscal_document_attribute":SIGN)"},
        {R"(127\.0\.0\.1:[0-9]+)", "HOST"},
        {R"("token":"[-_0-9A-Za-z]{128}")", R"("token":"TOKEN")"},
    };
    for (const auto& [pattern, word] : variables)
        text = std::regex_replace(text, std::regex(pattern), word);
    return text;
}

} // namespace

void expectAnswers(Service& service, const std::vector<Row>& rows)
{
    const emulator::ServiceOptions usual = service.options.service;
    for (const Row& row : rows) {
        service.options.service = usual;
        service.start();
        service.takeToken();
        const auto answer = row.ask(service);
        EXPECT_EQ(answer.status, row.status) << row.rule;
        EXPECT_EQ(withoutVariables(answer.body), row.answer) << row.rule << " (" << row.source << ")";
    }
}

std::string error(int code, const std::string& text)
{
    return R"("error":{"error_id":"UUID","code":)" + std::to_string(code) + R"(,"text":")" + text +
           R"(","type":"system"})";
}

std::string timestamp()
{
    return R"("timestamp":"01.03.2026 03:00:00"})";
}

std::string accepted()
{
    return R"({"uuid":"UUID","status":"wait","error":null,)" + timestamp();
}

} // namespace recorded
