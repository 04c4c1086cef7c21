#include "bench/baselines/curlqjson.h"

#include "bench/baselines/qjsonsale.h"

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

CurlQJson::CurlQJson(const Endpoint& endpoint, int lines)
    : sale(sampleSale(lines))
    , handle(curl_easy_init())
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
    const QByteArray answer = post(endpoint.url() + "getToken", R"({"login":"bench","pass":"bench"})"_ba);
    const QByteArray token = QJsonDocument::fromJson(answer)["token"_L1].toString().toUtf8();
    curl_slist_append(headers.get(), ("token: " + token).constData());
    // Otherwise a long body would wait for the service's consent.
    curl_slist_append(headers.get(), "Expect:");
}

std::int64_t CurlQJson::registerSale()
{
    const QJsonDocument accepted = QJsonDocument::fromJson(post(group + "/sell", qjsonText(sale)));
    const std::string uuid = accepted["uuid"_L1].toString().toStdString();
    const QJsonDocument done = QJsonDocument::fromJson(get(group + "/report/" + uuid));
    return done["payload"_L1]["fiscal_document_attribute"_L1].toInteger();
}

const QByteArray& CurlQJson::post(const std::string& url, const QByteArray& body)
{
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(handle.get(), CURLOPT_POSTFIELDS, body.constData());
    return perform(url);
}

const QByteArray& CurlQJson::get(const std::string& url)
{
    curl_easy_setopt(handle.get(), CURLOPT_HTTPGET, 1L);
    return perform(url);
}

const QByteArray& CurlQJson::perform(const std::string& url)
{
    reply.resize(0);
    curl_easy_setopt(handle.get(), CURLOPT_URL, url.c_str());
    if (const CURLcode code = curl_easy_perform(handle.get()); code != CURLE_OK)
        throw std::runtime_error(curl_easy_strerror(code));
    return reply;
}

} // namespace bench
