#include "hostcli/commands/versions.h"

#include "host/transport/libraryversions.h"
#include "hostcli/commands/setup.h"
#include "hostcli/failure.h"
#include "till/text.h"

using namespace Qt::Literals::StringLiterals;
using namespace till;

namespace frhost {

namespace {

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
    const QString tls = hostruntime::tlsVersion();
    return u"frhost %1\nplugin %2\nQt %3\nlibcurl %4\n%5"_s.arg(QStringLiteral(FRHOST_VERSION),
        pluginLine(plugin), QString::fromLatin1(qVersion()), hostruntime::curlVersion(), tls);
}

} // namespace frhost
