#include "emulator/faults/effect.h"

#include <algorithm>
#include <array>

namespace emulator {

namespace {

constexpr EndpointSet all{Endpoint::Token, Endpoint::Sell, Endpoint::Report};
constexpr EndpointSet ofDocuments{Endpoint::Sell, Endpoint::Report};
constexpr EndpointSet ofTokens{Endpoint::Token};

constexpr Phase before = Phase::Before;
constexpr Phase after = Phase::After;
using enum Parameter;

constexpr std::array effectTable{
    EffectInfo{Effect::Error, "error", before, all, Code, "the service's error `code`",
        toNumber(ErrorCode::Internal)},
    EffectInfo{Effect::Html, "html", before, all, Status, "HTTP `status` with an HTML page", 502},
    EffectInfo{Effect::Empty, "empty", before, all, Status, "HTTP `status` with an empty body", 200},
    EffectInfo{
        Effect::Truncated, "truncated", after, all, None, "half of the body, then the connection is closed"},
    EffectInfo{Effect::NotJson, "not-json", before, all, None, "a body that is not JSON"},
    EffectInfo{Effect::WrongLength, "wrong-length", after, all, Bytes, "Content-Length wrong by `bytes`", 16},
    EffectInfo{
        Effect::Drip, "drip", after, all, Milliseconds, "one byte of the answer every `milliseconds`", 100},
    EffectInfo{Effect::Delay, "delay", after, all, Milliseconds, "the answer after `milliseconds`", 5000},
    EffectInfo{Effect::Silent, "silent", before, all, None, "no answer, the connection is held open"},
    EffectInfo{Effect::Close, "close", before, all, None, "no answer, the connection is closed"},
    EffectInfo{Effect::ResetBefore, "reset-before", before, all, None, "TCP reset instead of an answer"},
    EffectInfo{
        Effect::ResetDuring, "reset-during", after, all, None, "TCP reset in the middle of the answer"},
    EffectInfo{Effect::ResetAfter, "reset-after", after, all, None, "the answer, then a TCP reset"},
    EffectInfo{
        Effect::OtherDocument, "other-document", after, ofDocuments, None, "the answer for another document"},
    EffectInfo{Effect::OldToken, "old-token", after, ofTokens, Milliseconds,
        "a token that expires after `milliseconds`"},
    EffectInfo{Effect::WithoutKey, "without-key", after, all, Key, "the answer without `key`"},
    EffectInfo{
        Effect::Fail, "fail", after, ofDocuments, Type, "the document fails with an error of this `type`"},
    EffectInfo{Effect::Never, "never", after, ofDocuments, None, "the document is never processed"},
};

constexpr std::array failureTable{
    FailureInfo{Failure::Driver, "driver", ErrorCode{502}, "Касса отклонила документ"},
    FailureInfo{Failure::Agent, "agent", ErrorCode{2003}, "Агент не смог передать документ на кассу"},
    FailureInfo{
        Failure::Timeout, "timeout", ErrorCode::ReceiptNotProcessed, "Документ слишком долго ждал в очереди"},
    FailureInfo{Failure::System, "system", ErrorCode::ReceiptNotProcessed, "Не удалось обработать чек"},
    FailureInfo{Failure::Unknown, "unknown", ErrorCode::Unknown, "Неизвестная ошибка"},
};

struct ParameterName
{
    Parameter parameter;
    std::string_view name;
};

constexpr std::array parameterNames{
    ParameterName{None, ""},
    ParameterName{Code, "code"},
    ParameterName{Status, "status"},
    ParameterName{Bytes, "bytes"},
    ParameterName{Milliseconds, "milliseconds"},
    ParameterName{Key, "key"},
    ParameterName{Type, "type"},
};

} // namespace

std::string_view nameOf(Phase phase)
{
    return phase == Phase::Before ? "before" : "after";
}

std::string_view nameOf(Parameter parameter)
{
    return std::ranges::find(parameterNames, parameter, &ParameterName::parameter)->name;
}

std::span<const EffectInfo> effects()
{
    return effectTable;
}

const EffectInfo& infoOf(Effect effect)
{
    return *std::ranges::find(effectTable, effect, &EffectInfo::effect);
}

std::span<const FailureInfo> failures()
{
    return failureTable;
}

const FailureInfo& infoOf(Failure failure)
{
    return *std::ranges::find(failureTable, failure, &FailureInfo::failure);
}

} // namespace emulator
