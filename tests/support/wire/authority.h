#pragma once

#include <filesystem>
#include <memory>
#include <string>

using SslContext = std::shared_ptr<struct ssl_ctx_st>;

/// A certificate authority for a test: a root, an intermediate below it, and certificates of servers. Only
/// the contexts that it has handed out outlive the object.
class Authority
{
public:
    /// A server's certificate and how the server uses it.
    struct Wanted
    {
        enum class Signer
        {
            Root,
            Intermediate,
            Itself
        };

        std::string host = "localhost";
        Signer signer = Signer::Root;
        /// Validity, in seconds from now.
        long notBefore = -3600;
        long notAfter = 3600;
        /// Whether the server sends the intermediate's certificate too.
        bool showIntermediate = true;
        /// The newest version of TLS offered, as OpenSSL numbers it; 0 for the newest there is.
        int maxVersion = 0;
    };

    Authority();
    ~Authority();
    Authority(const Authority&) = delete;
    Authority& operator=(const Authority&) = delete;

    /// The root's certificate in PEM.
    [[nodiscard]] std::string caFile() const;
    [[nodiscard]] SslContext server(const Wanted& wanted) const;
    [[nodiscard]] SslContext server() const { return server(Wanted()); }
    /// Writes a certificate and its key as PEM files, for servers in other programs.
    void write(const Wanted& wanted, const std::string& certificateFile, const std::string& keyFile) const;

private:
    struct Identity;

    [[nodiscard]] Identity issue(const Wanted& wanted) const;

    std::filesystem::path folder;
    std::unique_ptr<Identity> root;
    std::unique_ptr<Identity> intermediate;
};
