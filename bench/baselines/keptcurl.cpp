#include "bench/baselines/keptcurl.h"

#include <QJsonDocument>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace bench {

namespace {

std::size_t appendReply(char* from, std::size_t size, std::size_t count, void* context)
{
    static_cast<QByteArray*>(context)->append(from, static_cast<qsizetype>(size * count));
    return size * count;
}

} // namespace

KeptCurl::KeptCurl(const Endpoint& endpoint)
    : handle(curl_easy_init())
    , headers(curl_slist_append(nullptr, "Content-type: application/json; charset=utf-8"))
    , group(endpoint.url() + groupCode)
{
    CURL* curl = handle.get();
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &appendReply);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &reply);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    // With the folder set, libcurl reads the system's bundle again for each connection.
    curl_easy_setopt(curl, CURLOPT_CAPATH, nullptr);
    if (endpoint.isTls())
        curl_easy_setopt(curl, CURLOPT_CAINFO, endpoint.caFile.c_str());
    const QByteArray answer = postTo(endpoint.url() + "getToken", R"({"login":"bench","pass":"bench"})"_ba);
    const QByteArray token = QJsonDocument::fromJson(answer)["token"_L1].toString().toUtf8();
    curl_slist_append(headers.get(), ("token: " + token).constData());
    // Otherwise a long body would wait for the service's consent.
    curl_slist_append(headers.get(), "Expect:");
}

const QByteArray& KeptCurl::post(const char* path, const QByteArray& body)
{
    return postTo(group + path, body);
}

const QByteArray& KeptCurl::get(const std::string& path)
{
    curl_easy_setopt(handle.get(), CURLOPT_HTTPGET, 1L);
    return perform(group + path);
}

const QByteArray& KeptCurl::postTo(const std::string& url, const QByteArray& body)
{
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, body.constData());
    return perform(url);
}

const QByteArray& KeptCurl::perform(const std::string& url)
{
    reply.resize(0);
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    if (const CURLcode code = curl_easy_perform(handle.get()); code != CURLE_OK)
        throw std::runtime_error(curl_easy_strerror(code));
    return reply;
}

} // namespace bench
