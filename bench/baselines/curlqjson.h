#pragma once

#include "bench/baselines/contender.h"

#include <QByteArray>

#include <memory>

#include <curl/curl.h>

namespace bench {

/// Bare libcurl with QJsonDocument: one kept handle, options and headers set once, the body posted from
/// memory, each answer parsed once.
class CurlQJson : public Contender
{
public:
    explicit CurlQJson(const Endpoint& endpoint);

    std::int64_t registerSale(const Sale& sale) override;

private:
    struct Free
    {
        void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    /// Returns the answer's body.
    const QByteArray& post(const std::string& url, const char* body, qsizetype size);
    const QByteArray& get(const std::string& url);
    const QByteArray& perform(const std::string& url);

    std::unique_ptr<CURL, Free> handle;
    std::unique_ptr<curl_slist, Free> headers;
    std::string group;
    QByteArray reply;
};

} // namespace bench
