#include "host/transport/httptransfer.h"

#include <algorithm>

namespace hostruntime {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype maxHeaders = 64 * 1024;
constexpr qsizetype maxBody = 16 * 1024 * 1024;

std::chrono::milliseconds bounded(std::chrono::milliseconds limit)
{
    return std::clamp<std::chrono::milliseconds>(limit, 1ms, HttpTransfer::longest);
}

} // namespace

HttpTransfer::HttpTransfer(
    const HttpRequest& outgoing, const TransportOptions& limits, const std::function<void()>& onSending)
    : request(outgoing)
    , options(limits)
    , beforeSending(onSending)
{
}

bool HttpTransfer::begin()
{
    const int allowed = mayBeRepeated() ? 2 : 1;
    if (attempts == allowed) {
        refuseRepetition();
        return false;
    }
    ++attempts;
    beforeSending();
    progressed = Clock::now();
    return true;
}

void HttpTransfer::refuseRepetition()
{
    cause = u"соединение оборвано, запрос не повторён"_s;
}

void HttpTransfer::noteSent(qsizetype bytes)
{
    if (bytes == sent)
        return;
    sent = bytes;
    progressed = Clock::now();
}

bool HttpTransfer::addHeader(std::string_view line)
{
    progressed = Clock::now();
    headersSize += static_cast<qsizetype>(line.size());
    if (headersSize > maxHeaders) {
        cause = u"заголовки ответа больше 64 КиБ"_s;
        return false;
    }
    if (line.starts_with("HTTP/")) {
        headersEnded = false;
        const auto status = line.find(' ');
        informational = status != std::string_view::npos && line.substr(status + 1).starts_with('1');
    } else if (line == "\r\n" || line == "\n") {
        headersEnded = !informational;
    }
    return true;
}

bool HttpTransfer::addBody(std::string_view part)
{
    progressed = Clock::now();
    if (reply.size() + static_cast<qsizetype>(part.size()) > maxBody) {
        cause = u"тело ответа больше 16 МиБ"_s;
        return false;
    }
    reply.append(part.data(), static_cast<qsizetype>(part.size()));
    return true;
}

HttpTransfer::Limit HttpTransfer::nextLimit() const
{
    struct Candidate
    {
        Clock::time_point from;
        std::chrono::milliseconds limit;
        const char* name;
    };
    const Candidate phase = attempts == 0 ? Candidate{started, options.connect, "соединение"}
                            : headersSize > 0 ? Candidate{progressed, options.stall, "продолжение ответа"}
                            : sent < request.body.size()
                                ? Candidate{progressed, options.stall, "отправку"}
                                : Candidate{progressed, options.firstByte, "начало ответа"};
    const Candidate all{started, options.overall, "обмен в целом"};

    const auto now = Clock::now();
    const auto left = [&](const Candidate& candidate) {
        return std::chrono::ceil<std::chrono::milliseconds>(candidate.from + bounded(candidate.limit) - now);
    };
    const Candidate& next = left(phase) < left(all) ? phase : all;
    const auto rest = left(next);
    if (rest.count() > 0)
        return {rest, {}};
    return {rest, u"истекло время на %1 (предел %2 мс)"_s.arg(QString::fromUtf8(next.name))
                      .arg(bounded(next.limit).count())};
}

} // namespace hostruntime
