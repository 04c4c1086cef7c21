#include "tests/support/outcome.h"

#include "host/exceptions.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>

using namespace Qt::Literals::StringLiterals;

namespace {

QString className(const std::exception& e)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(e).name(), nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(name.get());
}

} // namespace

QString outcomeOf(const std::function<void()>& call)
{
    try {
        call();
        return u"returned"_s;
    } catch (const BasicException& e) {
        return className(e) + u": "_s + e.tr().ru();
    } catch (const std::exception& e) {
        return className(e) + u": "_s + QString::fromUtf8(e.what());
    }
}
