// Measures what the transport's choices cost and save; the source of the figures in docs/reliability.md.
#include "host/transport/restclient.h"
#include "tests/driver/wire/wireclient.h"
#include "tests/support/process.h"
#include "tests/support/wire/rawserver.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <curl/curl.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

using namespace Qt::Literals::StringLiterals;
using hostruntime::TransportOptions;

constexpr auto reply = R"({"uuid":"U","status":"done"})";
constexpr auto systemBundle = "/etc/ssl/certs/ca-certificates.crt";
constexpr auto systemFolder = "/etc/ssl/certs";

double millisecondsEach(int count, const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i)
        work();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    return took.count() / count;
}

void require(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(what);
}

// Plain use of the library, for comparison.
class PlainCurl
{
public:
    using Handle = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;

    // Posts once; returns whether there was an answer.
    bool post(const std::string& url, const std::function<void(CURL*)>& more)
    {
        CURL* curl = handle.get();
        curl_easy_reset(curl);
        sent = false;
        curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
        curl_easy_setopt(curl, CURLOPT_POST, 1L);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, 1L);
        curl_easy_setopt(curl, CURLOPT_READFUNCTION, &PlainCurl::read);
        curl_easy_setopt(curl, CURLOPT_READDATA, this);
        curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &PlainCurl::discard);
        more(curl);
        return curl_easy_perform(curl) == CURLE_OK;
    }

private:
    static std::size_t read(char* to, std::size_t, std::size_t, void* context)
    {
        auto& self = *static_cast<PlainCurl*>(context);
        if (self.sent)
            return 0;
        *to = '1';
        self.sent = true;
        return 1;
    }
    static std::size_t discard(char*, std::size_t size, std::size_t count, void*) { return size * count; }

    Handle handle{curl_easy_init(), &curl_easy_cleanup};
    bool sent = false;
};

void measureCertificates()
{
    QTemporaryDir folder;
    const std::string bundle = folder.filePath(u"bundle.pem"_s).toStdString();
    QFile all(QString::fromStdString(bundle));
    require(all.open(QIODevice::WriteOnly), "bundle");
    for (const std::string& part : {std::string(systemBundle), authority().caFile()}) {
        QFile file(QString::fromStdString(part));
        require(file.open(QIODevice::ReadOnly), "certificates");
        all.write(file.readAll());
    }
    all.close();

    const RawServer server(
        [](Peer& peer, const std::string&) { peer.answer(200, reply); }, authority().server());
    const auto plain = [&](const char* capath) {
        PlainCurl curl;
        return millisecondsEach(50, [&] {
            const bool answered = curl.post(server.url(), [&](CURL* handle) {
                curl_easy_setopt(handle, CURLOPT_FRESH_CONNECT, 1L);
                curl_easy_setopt(handle, CURLOPT_CAINFO, bundle.c_str());
                curl_easy_setopt(handle, CURLOPT_CAPATH, capath);
            });
            require(answered, "plain library");
        });
    };
    TransportOptions options;
    options.caFile = QString::fromStdString(bundle);
    const Defaults defaults(options);
    RestClient client;
    const QUrl url(QString::fromStdString(server.url()));
    const auto ours = [&] { require(client.post(url, "1", {}), "client"); };
    ours();
    std::cout << "A POST on a new TLS connection, the system's certificates trusted, loopback:\n"
              << "  library with a certificate folder, as Debian's default is   " << plain(systemFolder)
              << " ms\n"
              << "  library without one                                         " << plain(nullptr) << " ms\n"
              << "  RestClient::post, which may keep its connection             "
              << millisecondsEach(200, ours) << " ms\n";
}

void countFailures()
{
    const auto closing = [](Peer& peer, const std::string&) {
        peer.answer(200, reply);
        peer.close();
    };
    std::cout << "Of 200 POSTs to a server that closes after each answer, without an answer:\n";
    for (const bool tls : {false, true}) {
        const RawServer server(closing, tls ? authority().server() : SslContext());
        PlainCurl curl;
        int library = 0;
        for (int i = 0; i < 200; ++i) {
            library += curl.post(server.url(),
                           [](CURL* handle) {
                               curl_easy_setopt(handle, CURLOPT_CAINFO, authority().caFile().c_str());
                               curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
                           })
                           ? 0
                           : 1;
        }
        const Defaults defaults(trusting());
        RestClient client;
        int ours = 0;
        for (int i = 0; i < 200; ++i)
            ours += client.post(QUrl(QString::fromStdString(server.url())), "1", {}) ? 0 : 1;
        std::cout << (tls ? "  TLS:   " : "  plain: ") << "library with kept connections " << library
                  << ", RestClient::post " << ours << '\n';
    }
}

constexpr auto nginxProgram = "/usr/sbin/nginx";

// The arguments of nginx on loopback, with HTTP/2 offered.
QStringList nginxArguments(const QTemporaryDir& folder, int port)
{
    const QString certificate = folder.filePath(u"server.pem"_s);
    const QString key = folder.filePath(u"server.key"_s);
    authority().write({}, certificate.toStdString(), key.toStdString());
    QFile configuration(folder.filePath(u"nginx.conf"_s));
    require(configuration.open(QIODevice::WriteOnly), "configuration");
    configuration.write(uR"(
daemon off; master_process off; pid nginx.pid; error_log stderr crit;
events { worker_connections 64; }
http {
    access_log off; client_body_temp_path body; proxy_temp_path proxy; fastcgi_temp_path fastcgi;
    uwsgi_temp_path uwsgi; scgi_temp_path scgi; default_type application/json;
    server {
        listen 127.0.0.1:%1 ssl http2;
        ssl_certificate %2; ssl_certificate_key %3;
        location / { return 200 '{"uuid":"U","status":"done"}'; }
    }
})"_s.arg(port)
                            .arg(certificate, key)
                            .toUtf8());
    configuration.close();
    return {u"-p"_s, folder.path(), u"-c"_s, configuration.fileName()};
}

void compareVersions()
{
    const QString program = QString::fromLatin1(nginxProgram);
    if (!QFile::exists(program)) {
        std::cout << "HTTP/1.1 and HTTP/2 are not compared: " << nginxProgram
                  << " (package nginx-light) is missing.\n";
        return;
    }
    int port = 0;
    {
        const RawServer free([](Peer&, const std::string&) {});
        port = free.port();
    }
    const QTemporaryDir folder;
    Process nginx(program, nginxArguments(folder, port));
    const QUrl url(u"https://localhost:%1/"_s.arg(port));
    const auto measure = [&](bool http2) {
        TransportOptions options = trusting();
        options.http2 = http2;
        const Defaults defaults(options);
        RestClient client;
        const QByteArray receipt(2000, 'x');
        const QHash<QString, QString> headers{{u"token"_s, QString(128, u't')}};
        while (!client.get(url, {}, headers) && !nginx.hasEndedWithin(std::chrono::milliseconds(1))) {
        }
        return millisecondsEach(300, [&] {
            require(client.post(url, receipt, headers), "post");
            for (int i = 0; i < 5; ++i)
                require(client.get(url, {}, headers), "get");
        });
    };
    std::cout << "A receipt of 2 kB and five questions about it, nginx on loopback:\n";
    for (int round = 0; round < 3; ++round)
        std::cout << "  HTTP/1.1 " << measure(false) << " ms, HTTP/2 " << measure(true) << " ms\n";
    nginx.signal(SIGTERM);
    std::cerr << nginx.end().err.toStdString();
}

} // namespace

// transport_bench [certificates|answers|versions]: one measurement, or all.
int main(int argc, char** argv)
{
    constexpr std::pair<std::string_view, void (*)()> measurements[] = {
        {"certificates", &measureCertificates}, {"answers", &countFailures}, {"versions", &compareVersions}};
    const std::string_view wanted = argc > 1 ? argv[1] : "";
    bool found = false;
    for (const auto& [name, measure] : measurements) {
        if (!wanted.empty() && wanted != name)
            continue;
        found = true;
        measure();
    }
    if (!found)
        std::cerr << "usage: transport_bench [certificates|answers|versions]\n";
    return found ? 0 : 2;
}
