#pragma once

#include "bench/baselines/contender.h"
#include "bench/support/sale.h"

#include <QByteArray>

#include <memory>

#include <curl/curl.h>

namespace bench {

/// Bare libcurl with QJsonDocument: one kept handle, options and headers set once, the body posted from
/// memory, each answer parsed once.
class CurlQJson : public Contender
{
public:
    CurlQJson(const Endpoint& endpoint, int lines);

    std::int64_t registerSale() override;

private:
    struct Free
    {
        void operator()(CURL* curl) const { curl_easy_cleanup(curl); }
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    /// Each returns the body of the answer.
    const QByteArray& post(const std::string& url, const QByteArray& body);
    const QByteArray& get(const std::string& url);
    const QByteArray& perform(const std::string& url);

    Sale sale;
    std::unique_ptr<CURL, Free> handle;
    std::unique_ptr<curl_slist, Free> headers;
    std::string group;
    QByteArray reply;
};

} // namespace bench
