#include "fuzz/inputfile.h"
#include "host/log/secrets.h"
#include "plugin/atolonlinefiscalregister.h"
#include "till/config/registerconfig.h"
#include "till/config/registersetup.h"
#include "till/error.h"

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace till;

// The folder of the configuration, with a password file that the configuration may name.
const InputFile& folder()
{
    static const InputFile input;
    static const bool filled = [] {
        QFile password(input.path() + u"/password"_s);
        return password.open(QIODevice::WriteOnly) && password.write("secret\n") > 0;
    }();
    if (!filled)
        std::abort();
    return input;
}

void swallow(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

// The input is a configuration; it goes from its text to the properties of the register.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qInstallMessageHandler(swallow);
    hostruntime::secrets::clear();
    hw::AtolOnlineFiscalRegister device;
    try {
        const RegisterConfig config = readRegisterConfig(folder().written(data, size));
        configure(device, config);
        requireConnection(config, settableNames(device));
    } catch (const Error& error) {
        if (error.message().isEmpty())
            std::abort();
    }
    return 0;
}
