#include "atolonline/commandprocessor.h"
#include "host/log/log4qt.h"
#include "tests/support/qtprinters.h"
#include "tests/support/scriptedtransport.h"

#include <QLibraryInfo>
#include <QVersionNumber>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList tracked;

} // namespace

// A QSharedPointer reports every QObject that it is created from to this function of Qt, which does nothing.
// The definition in a program takes its place, for the libraries that the program loads too.
void QtSharedPointer::ExternalRefCountData::setQObjectShared(const QObject* object, bool enable)
{
    tracked << QString::fromLatin1(object->metaObject()->className()) +
                   (enable ? u" tracked"_s : u" not tracked"_s);
}

namespace {

bool qtReportsObjects()
{
    tracked.clear();
    const QSharedPointer<QObject> object(new QObject);
    return !tracked.isEmpty();
}

// Without a meta-object of its own the substitute, too, is called a RestClient.
TEST(Transport, IsHeldByAPointerThatTracksItWhetherItsOwnOrASubstitute)
{
    if (!qtReportsObjects()) {
        ASSERT_GE(QLibraryInfo::version(), QVersionNumber(6, 8)) << "an older Qt reports them";
        GTEST_SKIP() << "Qt " << qVersion() << " reports no object that a shared pointer is given";
    }
    const Log4Qt::Logger* logger = Log4Qt::LogManager::logger(u"frdriver"_s, u"test"_s);
    tracked.clear();
    {
        const atolonline::CommandProcessor processor(logger);
    }
    EXPECT_EQ(tracked, QStringList{u"RestClient tracked"_s});
    tracked.clear();
    const ScriptedTransport transport;
    {
        const atolonline::CommandProcessor processor(logger);
    }
    EXPECT_EQ(tracked, QStringList{u"RestClient tracked"_s});
}

} // namespace
