#include "emulator/service/service.h"

#include "emulator/faults/misbehaviour.h"
#include "emulator/protocol/replies.h"
#include "emulator/protocol/token.h"
#include "emulator/service/fiscalisation.h"
#include "emulator/service/record.h"
#include "emulator/service/statusreplies.h"
#include "emulator/values/identifiers.h"
#include "emulator/values/plaintext.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <ranges>

namespace emulator {

namespace {

constexpr auto documentLife = std::chrono::days(32);

// The description insists on the character set; the service takes less, even nothing. Letter case and spaces
// do not matter.
bool isAcceptable(std::string type, bool strict)
{
    std::erase_if(type, [](unsigned char c) { return std::isspace(c) != 0; });
    std::ranges::transform(
        type, type.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const bool described = type == "application/json;charset=utf-8";
    return described || (!strict && (type.empty() || type == "application/json"));
}

// The pattern of logins has not been published; this is what none can contain.
bool isLogin(const std::string& login)
{
    constexpr std::size_t longest = 100;
    return login.size() <= longest && isPlainText(login) &&
           login.find_first_of(" \"'<>\\") == std::string::npos;
}

bool isCorrection(const std::string& operation)
{
    return operation.ends_with("_correction");
}

// What the body of a call is to register.
Checked subjectOf(const std::string& operation, const Json& body, const std::string& inn)
{
    const char* name = isCorrection(operation) ? "correction" : "receipt";
    return {.name = name, .object = objectOf(body, name), .inn = inn};
}

std::string callbackUrl(const Json& body)
{
    const auto service = body.find("service");
    if (service == body.end() || !service->is_object())
        return {};
    const auto url = service->find("callback_url");
    return url != service->end() && url->is_string() ? url->get<std::string>() : std::string();
}

Json toJson(const std::vector<Violation>& violations)
{
    // The answer names all of them.
    constexpr std::size_t most = 50;
    Json all = Json::array();
    for (const Violation& violation : violations | std::views::take(most))
        all.push_back({{"field", violation.field}, {"rule", violation.rule}});
    return all;
}

Json errorOf(const LateFailure& failure)
{
    return {{"code", failure.code}, {"text", failure.text}, {"type", failure.type}};
}

} // namespace

Service::Service(
    const ServiceOptions& serviceOptions, Store& usedStore, FaultBox& usedFaults, Clock usedClock)
    : options(serviceOptions)
    , check(serviceOptions.edition, serviceOptions.lists)
    , store(usedStore)
    , faults(usedFaults)
    , clock(std::move(usedClock))
{
    for (const Group& group : options.groups)
        store.prepareRegisters(group.code, group.registers);
}

Answer Service::answer(const Request& request)
{
    sqlite::Transaction transaction = store.transaction();
    Context context = contextOf(request);
    if (context.call.endpoint == Endpoint::Sell)
        store.countRequest(context.call.group, context.call.externalId, context.call.operation);
    context.fault = faults.take(context.call);
    const Answer answer = context.fault == nullptr ? Answer{.reply = perform(context, request)}
                                                   : performWithFault(context, request);
    record(context, request, answer);
    transaction.commit();
    return answer;
}

Answer Service::performWithFault(Context& context, const Request& request)
{
    sqlite::Savepoint point = store.savepoint();
    const Pace paceBefore = pace;
    const Reply honest = perform(context, request);
    const auto answer = misbehave(*context.fault, context.call, honest, clock());
    if (answer && context.fault->phase == Phase::Before) {
        // The answer is as it would have been, but the savepoint undoes what the call did.
        pace = paceBefore;
        return *answer;
    }
    point.release();
    if (answer)
        return *answer;
    faults.uncount(*context.fault);
    context.fault = nullptr;
    return {.reply = honest};
}

Service::Context Service::contextOf(const Request& request)
{
    Context context{.call = readCall(request, !options.edition.strict)};
    Call& call = context.call;
    if (call.endpoint == Endpoint::Sell || call.endpoint == Endpoint::Report) {
        context.token = store.findToken(call.token);
        if (context.token)
            call.login = context.token->login;
    }
    if (call.endpoint == Endpoint::Report) {
        context.document = store.findDocument(call.uuid);
        if (context.document)
            call.externalId = context.document->externalId;
    }
    return context;
}

Reply Service::perform(const Context& context, const Request& request)
{
    const Endpoint endpoint = context.call.endpoint;
    const bool known = endpoint != Endpoint::Unknown;
    if (known && request.method == "POST" &&
        !isAcceptable(request.header("Content-Type"), options.edition.strict))
        return error(endpoint, ErrorCode::WrongContentType);
    switch (endpoint) {
    case Endpoint::Token:
        return issueToken(context);
    case Endpoint::Sell:
        return acceptDocument(context);
    case Endpoint::Report:
        return report(context);
    case Endpoint::Callback:
    case Endpoint::Unknown:
        break;
    }
    return error(endpoint, ErrorCode::InvalidRequest);
}

void Service::record(const Context& context, const Request& request, const Answer& answer)
{
    const Call& call = context.call;
    Exchange exchange = recordOf(call, request, answer, context.fault);
    exchange.at = clock();
    if (call.endpoint == Endpoint::Sell)
        exchange.uuid = store.findUuid(call.group, call.externalId).value_or("");
    store.addExchange(exchange);
    if (call.endpoint == Endpoint::Sell)
        noteRefusal(call, exchange);
    if (listener)
        listener(exchange);
}

void Service::noteRefusal(const Call& call, const Exchange& exchange)
{
    if (!exchange.uuid.empty()) {
        store.refusals().forget(call.group, call.externalId);
        return;
    }
    const Group* group = findGroup(call.group);
    const bool invalid = exchange.code == toNumber(ErrorCode::InvalidReceipt);
    store.refusals().add(refusalOf(
        call, exchange, invalid && group != nullptr ? toJson(wrongFields(call, *group)) : Json::array()));
}

Reply Service::issueToken(const Context& context)
{
    const Call& call = context.call;
    if (call.login.empty() || call.password.empty())
        return error(Endpoint::Token, ErrorCode::InvalidTokenRequest);
    const User* user = findUser(call.login);
    if (user == nullptr && !isLogin(call.login))
        return error(Endpoint::Token, ErrorCode::InvalidReceipt, "PatternMismatch: #/login");
    if (user == nullptr || user->password != call.password)
        return error(Endpoint::Token, ErrorCode::WrongPassword);
    if (user->blocked)
        return error(Endpoint::Token, ErrorCode::BlockedUser);
    if (user->protocolRefused)
        return error(Endpoint::Token, ErrorCode::UnsupportedProtocol,
            "Учётная запись относится к другой версии протокола");
    const bool old = context.fault != nullptr && context.fault->effect == Effect::OldToken;
    const std::chrono::milliseconds life = old ? context.fault->time : options.tokenLife;
    const TimePoint end = clock() + life;
    const std::string token = newToken(end);
    store.addToken(token, {.login = user->login, .expiresAt = end});
    return tokenReply(token, clock());
}

std::optional<ErrorCode> Service::refusal(const Context& context) const
{
    if (!context.token) {
        const auto end = endOf(context.call.token);
        return end && *end <= clock() ? ErrorCode::ExpiredToken : ErrorCode::UnknownToken;
    }
    if (context.token->expiresAt <= clock())
        return ErrorCode::ExpiredToken;
    const User* user = findUser(context.call.login);
    if (user == nullptr)
        return ErrorCode::UnknownToken;
    if (user->blocked)
        return ErrorCode::BlockedUser;
    const Group* group = findGroup(context.call.group);
    if (group == nullptr || std::ranges::count(user->groups, group->code) == 0)
        return ErrorCode::ForeignGroup;
    return group->protocolRefused ? std::optional(ErrorCode::UnsupportedProtocol) : std::nullopt;
}

Reply Service::acceptDocument(const Context& context)
{
    const Call& call = context.call;
    if (const auto code = refusal(context))
        return error(Endpoint::Sell, *code);
    if (std::ranges::count(options.lists.operations, call.operation) == 0)
        return error(Endpoint::Sell, ErrorCode::UnknownOperation);
    if (!call.body.is_object())
        return error(Endpoint::Sell, ErrorCode::InvalidRequest);
    const Group& group = *findGroup(call.group);
    if (const auto wrong = wrongFields(call, group); !wrong.empty())
        return error(Endpoint::Sell, ErrorCode::InvalidReceipt, invalidReceiptText(describe(wrong)));
    if (const auto uuid = store.findUuid(call.group, call.externalId))
        return waitingReply(
            *uuid, serviceError(ErrorCode::DuplicateId), clock(), duplicateText(call.externalId, call.group));
    return acceptedReply(newDocument(context, group).uuid, clock());
}

std::vector<Violation> Service::wrongFields(const Call& call, const Group& group) const
{
    return isCorrection(call.operation) ? check.violationsOfCorrection(call.body, group.inn)
                                        : check.violationsOfReceipt(call.body, group.inn);
}

Document Service::newDocument(const Context& context, const Group& group)
{
    const Call& call = context.call;
    const Checked subject = subjectOf(call.operation, call.body, group.inn);
    Document document{.uuid = newUuid(),
        .groupCode = group.code,
        .externalId = call.externalId,
        .operation = call.operation,
        .login = call.login,
        .receivedAt = clock(),
        .body = toLine(call.body),
        .totalKopecks = settledKopecks(subject.object),
        .callbackUrl = callbackUrl(call.body),
        .waitsLeft = options.waits};
    fiscalise(document, group, context.fault, lateFailureOf(subject, options.edition));
    store.addDocument(document);
    return document;
}

void Service::fiscalise(
    Document& document, const Group& group, const Fault* fault, const std::optional<LateFailure>& late)
{
    Register where = store.freestRegister(group.code, group.registers);
    document.deviceCode = deviceCodeOf(where);
    const TimePoint begin = std::max(document.receivedAt, where.freeAt);
    if (begin - document.receivedAt > options.queueTimeout) {
        document.readyAt = document.receivedAt + options.queueTimeout;
        document.outcome = Outcome::Fail;
        document.error = errorOf(Failure::Timeout);
        return;
    }
    document.readyAt = begin + randomLatency();
    where.freeAt = document.readyAt;
    if (fault != nullptr && fault->effect == Effect::Never) {
        document.outcome = Outcome::Never;
    } else if (fault != nullptr && fault->effect == Effect::Fail) {
        document.outcome = Outcome::Fail;
        document.error = errorOf(fault->failure, fault->code);
    } else if (late) {
        document.outcome = Outcome::Fail;
        document.error = errorOf(*late);
    } else {
        document.payload = registerReceipt(
            where, document.readyAt, document.totalKopecks, options.receiptsPerShift, options.fnsSite);
    }
    store.saveRegister(where);
}

std::chrono::milliseconds Service::randomLatency() const
{
    thread_local std::mt19937_64 source{std::random_device{}()};
    std::uniform_int_distribution<std::int64_t> between(
        options.latencyLow.count(), options.latencyHigh.count());
    return std::chrono::milliseconds(between(source));
}

Reply Service::report(const Context& context)
{
    if (const auto code = refusal(context))
        return error(Endpoint::Report, *code);
    const auto& document = context.document;
    const TimePoint now = clock();
    if (!document || document->groupCode != context.call.group || document->receivedAt + documentLife < now)
        return error(Endpoint::Report, ErrorCode::UnknownDocument);
    if (options.pace && !pace.allows(document->groupCode, findGroup(document->groupCode)->registers, now)) {
        const ServiceError tooOften{ErrorCode::InvalidRequest, 429, "system",
            "Слишком частые запросы состояния документов", Keys::None};
        return errorReply(Endpoint::Report, tooOften, now);
    }
    if (document->waitsLeft > 0) {
        store.setWaitsLeft(document->sequence, document->waitsLeft - 1);
        return waitingReply(*document, now);
    }
    return statusOf(*document);
}

std::string Service::statusWord(const Document& document) const
{
    if (document.waitsLeft > 0 || document.readyAt > clock() || document.outcome == Outcome::Never)
        return "wait";
    return document.outcome == Outcome::Done ? "done" : "fail";
}

Reply Service::statusOf(const Document& document) const
{
    if (statusWord(document) == "wait")
        return waitingReply(document, clock());
    Document linked = document;
    const Group* group = findGroup(document.groupCode);
    if (linked.payload.is_object() && (group == nullptr || group->receiptUrl))
        linked.payload["ofd_receipt_url"] = address + "#" + document.uuid;
    return finishedReply(linked, clock());
}

Json Service::fieldsToBlame(const Document& document) const
{
    const Group* group = findGroup(document.groupCode);
    if (document.outcome != Outcome::Fail || group == nullptr)
        return Json::array();
    const Json body = Json::parse(document.body);
    const auto late = lateFailureOf(subjectOf(document.operation, body, group->inn), options.edition);
    // A fault may have failed the document before.
    return late && errorOf(*late) == document.error ? toJson(late->fields) : Json::array();
}

Reply Service::error(Endpoint endpoint, ErrorCode code, const std::string& text) const
{
    return errorReply(endpoint, serviceError(code), clock(), text);
}

const Group* Service::findGroup(const std::string& code) const
{
    const auto found = std::ranges::find(options.groups, code, &Group::code);
    return found == options.groups.end() ? nullptr : &*found;
}

const User* Service::findUser(const std::string& login) const
{
    const auto found = std::ranges::find(options.users, login, &User::login);
    return found == options.users.end() ? nullptr : &*found;
}

} // namespace emulator
