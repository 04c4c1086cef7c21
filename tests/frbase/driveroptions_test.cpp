#include "frbase/basicfiscalregister.h"

#include <QMetaProperty>
#include <QVariant>

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

#include <sys/mman.h>
#include <unistd.h>

using hw::fr::DriverOptions;
using hw::fr::Option;

namespace {

// Arguments of a meta-call at the end of readable memory: reading one more crashes.
class Arguments
{
public:
    explicit Arguments(std::initializer_list<void*> values)
    {
        // The second page stays unreadable.
        pages = mmap(nullptr, 2 * pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        mprotect(pages, pageSize, PROT_READ | PROT_WRITE);
        begin = static_cast<void**>(pages) + pageSize / sizeof(void*) - values.size();
        std::copy(values.begin(), values.end(), begin);
    }
    ~Arguments() { munmap(pages, 2 * pageSize); }
    Q_DISABLE_COPY_MOVE(Arguments)

    [[nodiscard]] void** data() const { return begin; }

private:
    std::size_t pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* pages;
    void** begin;
};

class DriverOptionsProperty : public testing::Test
{
protected:
    DriverOptionsProperty() { device.setDriverOptions({{Option::Bit2, true}}); }

    QSharedPointer<BasicFrSettings> settings{new BasicFrSettings};
    hw::BasicFiscalRegister device{settings, nullptr};
    QMetaProperty property =
        device.metaObject()->property(device.metaObject()->indexOfProperty("driverOptions"));
};

TEST_F(DriverOptionsProperty, IsLeftAloneByAReadWithOneArgument)
{
    DriverOptions options{{Option::UseFn, false}};
    const Arguments arguments{&options};
    QMetaObject::metacall(&device, QMetaObject::ReadProperty, property.propertyIndex(), arguments.data());
    EXPECT_EQ(options, (DriverOptions{{Option::UseFn, false}}));
    EXPECT_EQ(arguments.data()[0], &options);
}

TEST_F(DriverOptionsProperty, IsLeftAloneByAReadWithTwoArguments)
{
    DriverOptions options{{Option::UseFn, false}};
    const Arguments arguments{&options, nullptr};
    QMetaObject::metacall(&device, QMetaObject::ReadProperty, property.propertyIndex(), arguments.data());
    EXPECT_EQ(options, (DriverOptions{{Option::UseFn, false}}));
    EXPECT_EQ(arguments.data()[1], nullptr);
}

TEST_F(DriverOptionsProperty, IsOfTheTypeThatTheHostRegisters)
{
    EXPECT_STREQ(property.typeName(), "hw::fr::DriverOptions");
    EXPECT_EQ(property.metaType(), QMetaType::fromType<DriverOptions>());
    EXPECT_EQ(property.metaType(), QMetaType::fromName("hw::fr::DriverOptions"));
    EXPECT_EQ(property.userType(), qMetaTypeId<DriverOptions>());
}

TEST_F(DriverOptionsProperty, IsWrittenFromATypedValueAlone)
{
    EXPECT_TRUE(
        device.setProperty("driverOptions", QVariant::fromValue(DriverOptions{{Option::Bit2, false}})));
    EXPECT_EQ(settings->getDriverOptions(), (DriverOptions{{Option::Bit2, false}}));
    EXPECT_FALSE(device.setProperty("driverOptions", 4));
    EXPECT_TRUE(device.setProperty("driverOptions", QVariant()));
    EXPECT_EQ(settings->getDriverOptions(), (DriverOptions{{Option::Bit2, false}}));
}

} // namespace
