#include "host/transport/libraryversions.h"

#include <curl/curl.h>

namespace hostruntime {

QString curlVersion()
{
    return QString::fromLatin1(curl_version_info(CURLVERSION_NOW)->version);
}

QString tlsVersion()
{
    return QString::fromLatin1(curl_version_info(CURLVERSION_NOW)->ssl_version).replace(u'/', u' ');
}

} // namespace hostruntime
