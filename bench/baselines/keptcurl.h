#pragma once

#include "bench/support/endpoint.h"

#include <QByteArray>

#include <memory>
#include <string>

#include <curl/curl.h>

namespace bench {

/// Bare libcurl: one kept handle, options and headers set once, the body posted from memory. Obtains its
/// token when it is constructed. Throws std::runtime_error.
class KeptCurl
{
public:
    explicit KeptCurl(const Endpoint& endpoint);

    /// Each returns the body of the answer, until the next call; the path follows the group's address.
    const QByteArray& post(const char* path, const QByteArray& body);
    const QByteArray& get(const std::string& path);

private:
    struct Free
    {
        void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    const QByteArray& postTo(const std::string& url, const QByteArray& body);
    const QByteArray& perform(const std::string& url);

    std::unique_ptr<CURL, Free> handle;
    std::unique_ptr<curl_slist, Free> headers;
    std::string group;
    QByteArray reply;
};

} // namespace bench
