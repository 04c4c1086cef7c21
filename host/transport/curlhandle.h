#pragma once

#include <QHash>
#include <QString>

#include <curl/curl.h>

#include <memory>

namespace hostruntime {

struct FreeHeaderLines
{
    void operator()(curl_slist* lines) const { curl_slist_free_all(lines); }
};
using HeaderLines = std::unique_ptr<curl_slist, FreeHeaderLines>;

/// What libcurl needs for exchanges with a peer: connection, options, TLS sessions, authorities; some of it
/// refers to the rest. Destroying it closes the connection.
struct CurlHandle
{
    struct CleanupEasy
    {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    struct CleanupMulti
    {
        void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
    };

    /// The lines that the easy handle sends, and what they were made of.
    QHash<QString, QString> headers;
    HeaderLines headerLines;
    char errorText[CURL_ERROR_SIZE] = {};
    // In this order, because the easy handle must be cleaned up first.
    std::unique_ptr<CURLM, CleanupMulti> multi;
    /// None after a failed exchange.
    std::unique_ptr<CURL, CleanupEasy> easy;
};

} // namespace hostruntime
