#include "host/exceptions.h"
#include "tests/support/qtprinters.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace Qt::Literals::StringLiterals;

namespace {

template <typename Derived, typename Base>
constexpr bool derives = std::is_base_of_v<Base, Derived>;

static_assert(derives<BasicException, std::runtime_error>);
static_assert(derives<DriverException, BasicException>);
static_assert(derives<FrDriverException, DriverException>);
static_assert(derives<FrCommandException, FrDriverException>);
static_assert(derives<FrWorkWithServiceException, FrCommandException>);
static_assert(derives<FrNoConnectionException, FrCommandException>);
static_assert(derives<FrCommandNotSupportException, FrDriverException>);
static_assert(!derives<FrCommandNotSupportException, FrCommandException>);
static_assert(derives<ComDriverException, DriverException>);
static_assert(!derives<ComDriverException, FrDriverException>);
static_assert(std::has_virtual_destructor_v<tr::Tr>);

template <typename... Classes>
constexpr bool areMadeOfAText = (std::is_convertible_v<const QString&, Classes> && ...);

static_assert(areMadeOfAText<BasicException, DriverException, FrDriverException, FrCommandException,
    FrWorkWithServiceException, FrNoConnectionException, FrCommandNotSupportException, ComDriverException>);

TEST(Exceptions, CarryTheirRussianMessageThroughTheRootOfTheFamily)
{
    try {
        throw FrNoConnectionException(u"Нет связи с ФР"_s);
    } catch (const BasicException& e) {
        EXPECT_EQ(e.tr().ru(), u"Нет связи с ФР"_s);
        EXPECT_STREQ(e.what(), "Нет связи с ФР");
    }
}

TEST(Tr, IsEmptyByDefaultAndCopiesItsText)
{
    const tr::Tr message(u"текст"_s);
    tr::Tr copy;
    EXPECT_EQ(copy.ru(), QString());
    copy = message;
    EXPECT_EQ(copy.ru(), u"текст"_s);
}

} // namespace
