#include "tests/support/wire/authority.h"

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

template <auto release>
struct Releaser
{
    template <typename T>
    void operator()(T* object) const
    {
        release(object);
    }
};

using Certificate = std::unique_ptr<X509, Releaser<&X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Releaser<&EVP_PKEY_free>>;
using File = std::unique_ptr<std::FILE, Releaser<&std::fclose>>;

void require(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string("OpenSSL: ") + what);
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Releaser<&X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "extension");
}

Certificate unsignedCertificate(const std::string& name, EVP_PKEY* key, long notBefore, long notAfter)
{
    Certificate certificate(X509_new());
    require(certificate != nullptr, "certificate");
    X509_set_version(certificate.get(), X509_VERSION_3);
    std::uint64_t serial = 0;
    require(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "serial number");
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate.get()), serial >> 1U);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), notBefore);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), notAfter);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
        reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
    return certificate;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* issuerKey)
{
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    addExtension(certificate, issuer, NID_authority_key_identifier, "keyid");
    require(X509_sign(certificate, issuerKey, EVP_sha256()) > 0, "signature");
}

} // namespace

struct Authority::Identity
{
    Key key;
    Certificate certificate;
};

Authority::Authority()
{
    std::string pattern = std::filesystem::temp_directory_path() / "authority-XXXXXX";
    require(::mkdtemp(pattern.data()) != nullptr, "temporary folder");
    folder = pattern;

    const auto authority = [](const std::string& name, const Identity* issuer) {
        Identity identity{Key(EVP_EC_gen("P-256")), nullptr};
        identity.certificate = unsignedCertificate(name, identity.key.get(), -86400, 86400);
        X509* certificate = identity.certificate.get();
        addExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE");
        addExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
        addExtension(certificate, certificate, NID_subject_key_identifier, "hash");
        sign(certificate, issuer ? issuer->certificate.get() : certificate,
            issuer ? issuer->key.get() : identity.key.get());
        return std::make_unique<Identity>(std::move(identity));
    };
    root = authority("Test root", nullptr);
    intermediate = authority("Test intermediate", root.get());

    const File file(std::fopen(caFile().c_str(), "w"));
    require(file && PEM_write_X509(file.get(), root->certificate.get()) == 1, "authority's file");
}

Authority::~Authority()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string Authority::caFile() const
{
    return folder / "ca.pem";
}

Authority::Identity Authority::issue(const Wanted& wanted) const
{
    Identity identity{Key(EVP_EC_gen("P-256")), nullptr};
    identity.certificate =
        unsignedCertificate(wanted.host, identity.key.get(), wanted.notBefore, wanted.notAfter);
    X509* certificate = identity.certificate.get();
    addExtension(certificate, certificate, NID_subject_alt_name, "DNS:" + wanted.host);
    addExtension(certificate, certificate, NID_ext_key_usage, "serverAuth");
    addExtension(certificate, certificate, NID_subject_key_identifier, "hash");
    const Identity& signer = wanted.signer == Wanted::Signer::Root           ? *root
                             : wanted.signer == Wanted::Signer::Intermediate ? *intermediate
                                                                             : identity;
    sign(certificate, signer.certificate.get(), signer.key.get());
    return identity;
}

SslContext Authority::server(const Wanted& wanted) const
{
    SslContext context(SSL_CTX_new(TLS_server_method()), &SSL_CTX_free);
    require(context != nullptr, "context");
    const Identity identity = issue(wanted);
    require(SSL_CTX_use_certificate(context.get(), identity.certificate.get()) == 1, "certificate");
    require(SSL_CTX_use_PrivateKey(context.get(), identity.key.get()) == 1, "key");
    if (wanted.signer == Wanted::Signer::Intermediate && wanted.showIntermediate)
        require(SSL_CTX_add1_chain_cert(context.get(), intermediate->certificate.get()) == 1, "intermediate");
    if (wanted.maxVersion != 0) {
        // Versions before 1.2 need digests that the default level of OpenSSL refuses.
        require(SSL_CTX_set_cipher_list(context.get(), "DEFAULT:@SECLEVEL=0") == 1, "ciphers");
        require(SSL_CTX_set_min_proto_version(context.get(), 0) == 1 &&
                    SSL_CTX_set_max_proto_version(context.get(), wanted.maxVersion) == 1,
            "version");
    }
    return context;
}

void Authority::write(
    const Wanted& wanted, const std::string& certificateFile, const std::string& keyFile) const
{
    const Identity identity = issue(wanted);
    const File certificate(std::fopen(certificateFile.c_str(), "w"));
    require(certificate && PEM_write_X509(certificate.get(), identity.certificate.get()) == 1, "certificate");
    const File key(std::fopen(keyFile.c_str(), "w"));
    require(key && PEM_write_PrivateKey(
                       key.get(), identity.key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1,
        "key");
}
