#include "tests/emulator/support/running.h"

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <cstdio>
#include <memory>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>
#include <unistd.h>

using emulator::Json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

template <auto Free>
struct Freer
{
    template <class T>
    void operator()(T* pointer) const
    {
        Free(pointer);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509_free>>;
using Context = std::unique_ptr<SSL_CTX, Freer<SSL_CTX_free>>;
using Ssl = std::unique_ptr<SSL, Freer<SSL_free>>;

// A self-signed certificate for 127.0.0.1, valid for an hour, and its key.
void writeCertificate(const emulator::TlsFiles& files)
{
    const Key key(EVP_EC_gen("P-256"));
    const Certificate certificate(X509_new());
    X509* x = certificate.get();
    X509_set_version(x, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(x), 1);
    X509_gmtime_adj(X509_getm_notBefore(x), -3600);
    X509_gmtime_adj(X509_getm_notAfter(x), 3600);
    X509_set_pubkey(x, key.get());
    const unsigned char name[] = "fremulator test";
    X509_NAME_add_entry_by_txt(X509_get_subject_name(x), "CN", MBSTRING_ASC, name, -1, -1, 0);
    X509_set_issuer_name(x, X509_get_subject_name(x));
    X509_EXTENSION* alternative = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
    X509_add_ext(x, alternative, -1);
    X509_EXTENSION_free(alternative);
    X509_sign(x, key.get(), EVP_sha256());

    FILE* file = std::fopen(files.certificateChain.c_str(), "w");
    PEM_write_X509(file, x);
    std::fclose(file);
    file = std::fopen(files.privateKey.c_str(), "w");
    PEM_write_PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    std::fclose(file);
}

struct Tls : RunningEmulator
{
    Tls()
    {
        const std::string stem = testing::TempDir() + "fremulator-" + std::to_string(::getpid());
        written = {.certificateChain = stem + ".crt", .privateKey = stem + ".key"};
        writeCertificate(written);
        options.tls = written;
    }
    ~Tls() override
    {
        std::remove(written.certificateChain.c_str());
        std::remove(written.privateKey.c_str());
    }

    // The answer that a client that verifies certificates receives; empty if it rejected the server.
    std::string answerOver(const std::string& request, bool trusting, const char* address = "127.0.0.1")
    {
        const Context context(SSL_CTX_new(TLS_client_method()));
        SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, nullptr);
        if (trusting)
            SSL_CTX_load_verify_file(context.get(), options.tls.certificateChain.c_str());
        const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in server{};
        server.sin_family = AF_INET;
        server.sin_port = htons(port());
        server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        std::string answer;
        {
            const Ssl ssl(SSL_new(context.get()));
            X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(ssl.get()), address);
            SSL_set_fd(ssl.get(), handle);
            const bool good =
                ::connect(handle, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0 &&
                SSL_connect(ssl.get()) == 1 &&
                SSL_write(ssl.get(), request.data(), static_cast<int>(request.size())) > 0;
            char bytes[4096];
            for (int count = good ? 1 : 0; count > 0;) {
                count = SSL_read(ssl.get(), bytes, sizeof bytes);
                answer.append(bytes, static_cast<std::size_t>(std::max(0, count)));
            }
        }
        ::close(handle);
        return answer;
    }

private:
    // A test may give the emulator other files.
    emulator::TlsFiles written;
};

const std::string loginRequest =
    postRequest("/possystem/v4/getToken", R"({"login":"shop","pass":"secret"})", "Connection: close\r\n");

} // namespace

TEST_F(Tls, AnswersAClientThatTrustsTheCertificate)
{
    start();
    EXPECT_THAT(
        answerOver(loginRequest, true), testing::AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("\"token\"")));
}

TEST_F(Tls, IsRejectedByAClientThatDoesNotTrustCertificateOrAddress)
{
    start();
    EXPECT_EQ(answerOver(loginRequest, false), "");
    EXPECT_EQ(answerOver(loginRequest, true, "127.0.0.2"), "");
}

TEST_F(Tls, SupportsFaults)
{
    options.faults = {emulator::readFault(
        Json{{"endpoint", "token"}, {"effect", "reset-before"}, {"match", {{"next", 1}}}})};
    start();
    EXPECT_EQ(answerOver(loginRequest, true), "");
    EXPECT_THAT(answerOver(loginRequest, true), StartsWith("HTTP/1.1 200"));
}

TEST_F(Tls, DoesNotStartWithUnusableFiles)
{
    options.tls.privateKey = "/nowhere/key.pem";
    EXPECT_THROW(start(), std::runtime_error);
}
