#include "tests/support/LoopbackServer.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>

namespace tarnik {

namespace {

template <class T, auto Free>
using Owned = std::unique_ptr<T, decltype([](T* object) { Free(object); })>;

enum class Event { none, readable, stop };

// Returns the first event of the two descriptors within this time.
Event next(int fd, int stop, Seconds within) {
    std::array<pollfd, 2> watched{pollfd{fd, POLLIN, 0}, pollfd{stop, POLLIN, 0}};
    if (::poll(watched.data(), 2, static_cast<int>(within.count() * 1000)) == 0) return Event::none;
    return watched[1].revents != 0 ? Event::stop : Event::readable;
}

// Makes a key and a self-signed certificate for "localhost". Returns the certificate as PEM.
std::string useOwnCertificate(SSL_CTX* tls, long validSeconds) {
    const Owned<EVP_PKEY, EVP_PKEY_free> key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    const Owned<X509, X509_free> certificate(X509_new());
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -7200);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validSeconds);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    const auto* const host = reinterpret_cast<const unsigned char*>("localhost");
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    const Owned<BIO, BIO_free> text(BIO_new(BIO_s_mem()));
    if (X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0 ||
        SSL_CTX_use_certificate(tls, certificate.get()) != 1 || SSL_CTX_use_PrivateKey(tls, key.get()) != 1 ||
        PEM_write_bio_X509(text.get(), certificate.get()) != 1) {
        throw std::runtime_error("no certificate");
    }
    char* bytes = nullptr;
    const long count = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<std::size_t>(count)};
}

}  // namespace

bool LoopbackServer::Client::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const int sent = BIO_write(stream_, bytes.data(), static_cast<int>(bytes.size()));
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool LoopbackServer::Client::disconnects(Seconds within) const {
    return next(fd_, stop_, within) != Event::none;
}

LoopbackServer::LoopbackServer(Script script, Security security) : script_(std::move(script)) {
    ::signal(SIGPIPE, SIG_IGN);  // a client may disconnect at any time
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listening_.get(), generic, size) != 0 || ::listen(listening_.get(), 8) != 0 ||
        ::getsockname(listening_.get(), generic, &size) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    origin_ = "http://127.0.0.1:";
    if (security != Security::none) {
        origin_ = "https://localhost:";
        tls_ = {SSL_CTX_new(TLS_server_method()), SSL_CTX_free};
        certificate_ = useOwnCertificate(tls_.get(), security == Security::tls ? 3600 : -3600);
    }
    origin_ += std::to_string(ntohs(address.sin_port));
    thread_ = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
    stop_.writeEnd.reset();
    thread_.join();
}

void LoopbackServer::serve() const {
    while (next(listening_.get(), stop_.readEnd.get(), Seconds(3600)) == Event::readable) {
        const UniqueFd client(::accept(listening_.get(), nullptr, nullptr));
        if (client) serve(client.get());
    }
}

void LoopbackServer::serve(int fd) const {
    Owned<BIO, BIO_free_all> stream(BIO_new_socket(fd, BIO_NOCLOSE));
    if (tls_) stream.reset(BIO_push(BIO_new_ssl(tls_.get(), 0), stream.release()));
    std::string head;
    std::array<char, 4096> buffer{};
    while (!head.contains("\r\n\r\n")) {
        if (next(fd, stop_.readEnd.get(), Seconds(20)) != Event::readable) return;
        const int count = BIO_read(stream.get(), buffer.data(), static_cast<int>(buffer.size()));
        if (count <= 0) return;
        head.append(buffer.data(), static_cast<std::size_t>(count));
    }
    script_(Client(fd, stop_.readEnd.get(), stream.get()), head);
}

}  // namespace tarnik
