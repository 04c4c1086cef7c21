#include "hostcli/commands/versions.h"

#include "hostcli/commands/setup.h"
#include "hostcli/failure.h"
#include "till/text.h"

#include <dlfcn.h>

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

// What the HTTP library says of itself and of what it uses: "libcurl/7.88.1 OpenSSL/3.0.19 zlib/1.2.13". It
// is loaded with the host's runtime, whose own matter it is; nothing of it is in the runtime's interface.
QString transportLibraries()
{
    using Version = const char* (*)();
    const auto version = reinterpret_cast<Version>(dlsym(RTLD_DEFAULT, "curl_version"));
    return version ? QString::fromLatin1(version()) : QString();
}

QString pluginLine(const QString& named)
{
    CommandLine line;
    line.plugin = named;
    try {
        const PluginFile plugin = pluginOf(line);
        const QString version = versionOf(plugin);
        return Text::tr("%1 %2, built with Qt %3: %4")
            .arg(plugin.name(), version.isEmpty() ? Text::tr("without a version") : version,
                qtVersionOf(plugin), plugin.path);
    } catch (const Failure& failure) {
        return failure.message();
    } catch (const Error& error) {
        return error.message();
    }
}

} // namespace

QString versions(const QString& plugin)
{
    QStringList libraries = transportLibraries().split(u' ').mid(0, 2);
    libraries.replaceInStrings(u"/"_s, u" "_s);
    return u"frhost %1\nplugin %2\nQt %3\n%4"_s.arg(QStringLiteral(FRHOST_VERSION), pluginLine(plugin),
        QString::fromLatin1(qVersion()), libraries.join(u'\n'));
}

} // namespace frhost
