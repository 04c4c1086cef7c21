#include "till/sale/attempt.h"

#include "host/exceptions.h"
#include "host/log/secrets.h"
#include "till/text.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

using namespace Qt::Literals::StringLiterals;

namespace till {

namespace {

namespace secrets = hostruntime::secrets;

QString className(const std::exception& exception)
{
    const char* mangled = typeid(exception).name();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(name ? name.get() : mangled);
}

} // namespace

ErrorInfo describe(const std::exception& exception)
{
    const auto* ofHost = dynamic_cast<const BasicException*>(&exception);
    const QString text = ofHost ? ofHost->tr().ru() : QString::fromUtf8(exception.what());
    // It may hold the service's own words, and they what was sent.
    return {className(exception), std::nullopt, secrets::masked(text, secrets::Audience::Developer)};
}

void addWords(ErrorInfo& error, const ServiceAnswer& answer)
{
    error.detail = secrets::masked(answer.errorText, secrets::Audience::Anyone);
    error.errorId = secrets::masked(answer.errorId, secrets::Audience::Anyone);
}

void preferWordsOfService(ErrorInfo& error)
{
    if (error.type == "FrNoConnectionException"_L1 && !error.detail.isEmpty())
        error.message = error.detail;
}

std::optional<ErrorInfo> attempt(const std::function<void()>& action)
{
    try {
        action();
    } catch (const std::exception& exception) {
        return describe(exception);
    } catch (...) {
        return ErrorInfo{{}, std::nullopt, Text::tr("an exception of an unknown class")};
    }
    return std::nullopt;
}

} // namespace till
