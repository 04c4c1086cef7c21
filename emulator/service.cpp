#include "emulator/service.h"

#include "emulator/errors.h"
#include "emulator/identifiers.h"
#include "emulator/receiptcheck.h"

#include <algorithm>
#include <cctype>

namespace emulator {

namespace {

constexpr auto reportLife = std::chrono::days(32);

/// The service wants exactly this type and character set; letters may be of any case, blanks do not count.
bool isJsonInUtf8(std::string type)
{
    std::erase_if(type, [](const unsigned char c) { return std::isspace(c) != 0; });
    std::ranges::transform(
        type, type.begin(), [](const unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return type == "application/json;charset=utf-8";
}

std::string callbackUrl(const Json& body)
{
    const auto service = body.find("service");
    if (service == body.end() || !service->is_object())
        return {};
    const auto url = service->find("callback_url");
    return url != service->end() && url->is_string() ? url->get<std::string>() : std::string();
}

Reply reply(const int status, const Json& body)
{
    return {.status = status, .body = body.dump()};
}

} // namespace

Service::Service(const Options& options, Store& store, Clock clock)
    : options_(options)
    , store_(store)
    , clock_(std::move(clock))
{
    for (const Group& group : options_.groups)
        store_.prepareRegisters(group.code, group.registers);
}

Reply Service::answer(const Request& request)
{
    Call call = readCall(request);
    try {
        return perform(call, request);
    } catch (const std::exception& failure) {
        return error(call.endpoint, 50, failure.what());
    }
}

Reply Service::perform(Call& call, const Request& request)
{
    if (request.method == "POST" && !isJsonInUtf8(request.header("Content-Type")))
        return error(call.endpoint, 41);
    switch (call.endpoint) {
    case Endpoint::Token:
        return giveToken(call);
    case Endpoint::Sell:
        return takeDocument(call, request.body);
    case Endpoint::Report:
        return report(call);
    case Endpoint::Unknown:
        break;
    }
    return error(Endpoint::Unknown, 40);
}

Reply Service::giveToken(const Call& call)
{
    if (call.login.empty() || call.password.empty())
        return error(Endpoint::Token, 13);
    const User* user = findUser(call.login);
    if (user == nullptr || user->password != call.password)
        return error(Endpoint::Token, 12);
    if (user->blocked)
        return error(Endpoint::Token, 14);
    const TimePoint now = clock_();
    const std::string token = newToken();
    store_.addToken(token, {.login = user->login, .expiresAt = now + options_.tokenLife});
    return reply(200, {{"error", nullptr}, {"token", token}, {"timestamp", moscowTime(now)}});
}

std::optional<int> Service::refusal(Call& call)
{
    const auto token = store_.findToken(call.token);
    if (!token)
        return 10;
    if (token->expiresAt <= clock_())
        return 11;
    call.login = token->login;
    const User* user = findUser(call.login);
    if (user == nullptr)
        return 10;
    if (user->blocked)
        return 14;
    if (findGroup(call.group) == nullptr || std::ranges::count(user->groups, call.group) == 0)
        return 20;
    return std::nullopt;
}

Reply Service::takeDocument(Call& call, const std::string& body)
{
    if (const auto code = refusal(call))
        return error(Endpoint::Sell, *code);
    if (std::ranges::count(options_.lists.operations, call.operation) == 0)
        return error(Endpoint::Sell, 31);
    if (!call.body.is_object())
        return error(Endpoint::Sell, 40);
    const Group& group = *findGroup(call.group);
    if (const std::string wrong = wrongFields(call, group); !wrong.empty())
        return error(Endpoint::Sell, 32, wrong);

    const TimePoint now = clock_();
    if (const auto uuid = store_.findUuid(call.group, call.externalId)) {
        const ServiceError& exists = serviceError(33);
        return reply(exists.httpStatus, {{"uuid", *uuid}, {"status", "wait"}, {"error", errorObject(exists)},
                                            {"timestamp", moscowTime(now)}});
    }
    const Document document = newDocument(call, body, group);
    return reply(200,
        {{"uuid", document.uuid}, {"status", "wait"}, {"error", nullptr}, {"timestamp", moscowTime(now)}});
}

std::string Service::wrongFields(const Call& call, const Group& group) const
{
    const bool correction = call.operation.ends_with("_correction");
    const auto check = correction ? checkCorrection : checkReceipt;
    return describe(check(call.body, options_.lists, group.inn));
}

Document Service::newDocument(const Call& call, const std::string& body, const Group& group)
{
    const TimePoint now = clock_();
    Register where = store_.freestRegister(group.code, group.registers);
    Document document{.uuid = newUuid(),
        .groupCode = group.code,
        .externalId = call.externalId,
        .operation = call.operation,
        .login = call.login,
        .receivedAt = now,
        .body = body,
        .totalKopecks = paidKopecks(call.body[call.body.contains("receipt") ? "receipt" : "correction"]),
        .callbackUrl = callbackUrl(call.body),
        .deviceCode = "emulated-" + where.groupCode + "-" + std::to_string(where.number),
        .readyAt = now,
        .waitsLeft = options_.waits,
        .outcome = Outcome::Done};
    document.payload =
        registerReceipt(where, document.readyAt, document.totalKopecks, options_.receiptsPerShift);
    if (group.receiptUrl)
        document.payload["ofd_receipt_url"] = address_ + "#" + document.uuid;
    store_.addDocument(document, where);
    return document;
}

Reply Service::report(Call& call)
{
    if (const auto code = refusal(call))
        return error(Endpoint::Report, *code);
    const auto document = store_.findDocument(call.uuid);
    const TimePoint now = clock_();
    if (!document || document->groupCode != call.group || document->receivedAt + reportLife < now)
        return error(Endpoint::Report, 30);
    if (document->waitsLeft > 0) {
        store_.setWaitsLeft(document->sequence, document->waitsLeft - 1);
        return waiting(*document);
    }
    return document->readyAt > now || document->outcome == Outcome::Never ? waiting(*document)
                                                                          : finished(*document);
}

Reply Service::error(const Endpoint endpoint, const int code, const std::string& details) const
{
    const ServiceError& row = serviceError(code);
    Json body{{"error", errorObject(row, details)}};
    if (endpoint == Endpoint::Sell || endpoint == Endpoint::Report)
        body["status"] = "fail";
    if (endpoint == Endpoint::Report)
        body["payload"] = nullptr;
    body["timestamp"] = moscowTime(clock_());
    return reply(row.httpStatus, body);
}

Reply Service::waiting(const Document& document) const
{
    return status(document, "wait", errorObject(serviceError(34)), nullptr);
}

Reply Service::finished(const Document& document) const
{
    const bool done = document.outcome == Outcome::Done;
    return status(document, done ? "done" : "fail", document.error, document.payload);
}

Reply Service::status(
    const Document& document, const char* word, const Json& error, const Json& payload) const
{
    return reply(200, {{"uuid", document.uuid}, {"error", error}, {"status", word}, {"payload", payload},
                          {"timestamp", moscowTime(clock_())}, {"group_code", document.groupCode},
                          {"daemon_code", "fremulator"}, {"device_code", document.deviceCode},
                          {"external_id", document.externalId}, {"callback_url", document.callbackUrl}});
}

const Group* Service::findGroup(const std::string& code) const
{
    const auto found = std::ranges::find(options_.groups, code, &Group::code);
    return found == options_.groups.end() ? nullptr : &*found;
}

const User* Service::findUser(const std::string& login) const
{
    const auto found = std::ranges::find(options_.users, login, &User::login);
    return found == options_.users.end() ? nullptr : &*found;
}

} // namespace emulator
