#include "bench/responder/certificate.h"

#include <memory>
#include <stdexcept>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace responder {

namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

void require(bool success)
{
    if (!success)
        throw std::runtime_error("cannot make a certificate");
}

void addExtension(X509* certificate, int nid, const char* value)
{
    const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, nid, value), &X509_EXTENSION_free);
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

Certificate selfSigned(EVP_PKEY* key)
{
    Certificate certificate(X509_new(), &X509_free);
    require(certificate != nullptr);
    X509_set_version(certificate.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 24 * 3600);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME* name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(
        name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    addExtension(certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
    addExtension(certificate.get(), NID_subject_alt_name, "IP:127.0.0.1");
    require(X509_sign(certificate.get(), key, EVP_sha256()) > 0);
    return certificate;
}

void writePem(X509* certificate, const std::string& name)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> file(BIO_new_file(name.c_str(), "w"), &BIO_free);
    require(file && PEM_write_bio_X509(file.get(), certificate) == 1);
}

} // namespace

SSL_CTX* contextWithNewCertificate(const std::string& caFile)
{
    const Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    require(key != nullptr);
    const Certificate certificate = selfSigned(key.get());
    std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(
        SSL_CTX_new(TLS_server_method()), &SSL_CTX_free);
    require(context && SSL_CTX_use_certificate(context.get(), certificate.get()) == 1 &&
            SSL_CTX_use_PrivateKey(context.get(), key.get()) == 1);
    writePem(certificate.get(), caFile);
    return context.release();
}

} // namespace responder
