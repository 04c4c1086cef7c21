#include "tests/sweep/replies/reply.h"

#include <ostream>

using nlohmann::json;

namespace {

json errorOf(int code, const char* type)
{
    return {{"error_id", "475d6d8d-844d-4d05-aa8b-e3dbdf3defd5"}, {"code", code}, {"text", "the text"},
        {"type", type}};
}

json answerOf(const char* status, const json& error)
{
    return {
        {"uuid", honest::uuid}, {"status", status}, {"error", error}, {"timestamp", "22.11.2026 04:46:05"}};
}

json reportOf(const char* status, const json& error, const json& payload)
{
    json report = answerOf(status, error);
    report.update({{"external_id", honest::id}, {"payload", payload}, {"group_code", "shop_1"},
        {"daemon_code", "prod-agent-1"}, {"device_code", "KSR13.00-1-11"}, {"callback_url", ""}});
    return report;
}

void show(const char* call, const std::vector<Reply>& replies, std::ostream& out)
{
    for (const Reply& reply : replies) {
        out << call << ": ";
        if (reply.isLost)
            out << "no answer\n";
        else
            out << reply.status << ' ' << reply.body << '\n';
    }
}

} // namespace

json Reply::json() const
{
    return nlohmann::json::parse(isLost ? "" : body, nullptr, false);
}

namespace honest {

json token()
{
    return {{"error", nullptr}, {"token", "fj45u923j59ju42395iu9423i59243u0"},
        {"timestamp", "22.11.2026 04:46:05"}};
}

json accepted()
{
    return answerOf("wait", nullptr);
}

json known()
{
    return answerOf("wait", errorOf(33, "system"));
}

json refused(int code)
{
    json answer = answerOf("fail", errorOf(code, "system"));
    answer["uuid"] = nullptr;
    return answer;
}

json waiting()
{
    return reportOf("wait", errorOf(34, "system"), nullptr);
}

json done()
{
    return reportOf("done", nullptr,
        {{"total", total}, {"fns_site", "www.nalog.ru"}, {"fn_number", "1110000100238211"},
            {"shift_number", 23}, {"receipt_datetime", "22.11.2026 04:46:05"}, {"fiscal_receipt_number", 6},
            {"fiscal_document_number", 133}, {"ecr_registration_number", "0000111118041361"},
            {"fiscal_document_attribute", 3449555941}, {"ofd_receipt_url", "https://ofd.example/1"}});
}

json failed(int code)
{
    return reportOf("fail", errorOf(code, "driver"), nullptr);
}

} // namespace honest

Reply replyOf(const json& answer)
{
    return {.body = answer.dump()};
}

void showValue(const Script& script, std::ostream& out)
{
    out << '\n';
    show("token", script.token, out);
    show("sell", script.sell, out);
    show("report", script.report, out);
}
