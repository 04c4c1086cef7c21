#include "hostcli/log/logging.h"

#include <QtGlobal>

#include <gtest/gtest.h>

using namespace frhost;

namespace {

TEST(Logging, LeavesOutQtsAdviceAboutTheLocaleAndNothingElse)
{
    testing::internal::CaptureStderr();
    ignoreLocaleWarning();
    qWarning("Detected locale \"C\" with character encoding \"ANSI_X3.4-1968\", which is not UTF-8.\n"
             "Qt depends on a UTF-8 locale, and has switched to \"C.UTF-8\" instead.\n"
             "If this causes problems, reconfigure your locale. See the locale(1) manual\n"
             "for more information.");
    qWarning("something else");
    qInstallMessageHandler(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "something else\n");
}

} // namespace
