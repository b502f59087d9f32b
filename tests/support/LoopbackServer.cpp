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
#include <unistd.h>

namespace tarnik {

namespace {

constexpr Seconds patience{20};

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};

// Whether `fd` can be read within this time, before `stop` can.
bool isReadable(int fd, int stop, Seconds within) {
    std::array<pollfd, 2> watched{pollfd{fd, POLLIN, 0}, pollfd{stop, POLLIN, 0}};
    return ::poll(watched.data(), 2, static_cast<int>(within.count() * 1000)) > 0 && watched[1].revents == 0;
}

// A fresh key with a certificate for "localhost", signed by itself.
std::string useOwnCertificate(SSL_CTX* tls) {
    const std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY_free>> key(
        EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"));
    const std::unique_ptr<X509, Freed<X509_free>> certificate(X509_new());
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    const std::string host = "localhost";
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>(host.c_str()),
                               -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    const std::unique_ptr<BIO, Freed<BIO_free>> text(BIO_new(BIO_s_mem()));
    if (X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0 ||
        SSL_CTX_use_certificate(tls, certificate.get()) != 1 || SSL_CTX_use_PrivateKey(tls, key.get()) != 1 ||
        PEM_write_bio_X509(text.get(), certificate.get()) != 1) {
        throw std::runtime_error("no certificate");
    }
    char* bytes = nullptr;
    const long count = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<std::size_t>(count)};
}

// Empty when the client leaves before it has asked.
std::string receivedHead(int fd, int stop, SSL* tls) {
    std::string head;
    std::array<char, 4096> buffer{};
    while (head.find("\r\n\r\n") == std::string::npos) {
        if (!isReadable(fd, stop, patience)) return {};
        const ssize_t count = tls != nullptr ? SSL_read(tls, buffer.data(), buffer.size())
                                             : ::recv(fd, buffer.data(), buffer.size(), 0);
        if (count <= 0) return {};
        head.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return head;
}

}  // namespace

bool LoopbackServer::Client::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t sent = tls_ != nullptr ? SSL_write(tls_, bytes.data(), static_cast<int>(bytes.size()))
                                             : ::send(fd_, bytes.data(), bytes.size(), 0);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool LoopbackServer::Client::leaves(Seconds within) const {
    std::array<pollfd, 2> watched{pollfd{fd_, POLLIN, 0}, pollfd{stop_, POLLIN, 0}};
    return ::poll(watched.data(), 2, static_cast<int>(within.count() * 1000)) != 0;
}

LoopbackServer::LoopbackServer(Script script, Security security) : script_(std::move(script)) {
    ::signal(SIGPIPE, SIG_IGN);  // a client may leave at any time
    std::array<int, 2> stop{};
    if (::pipe(stop.data()) != 0) throw std::runtime_error("no pipe");
    stopRead_.reset(stop[0]);
    stopWrite_.reset(stop[1]);

    listening_.reset(::socket(AF_INET, SOCK_STREAM, 0));
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
    if (security == Security::tls) {
        origin_ = "https://localhost:";
        tls_ = {SSL_CTX_new(TLS_server_method()), SSL_CTX_free};
        certificate_ = useOwnCertificate(tls_.get());
    }
    origin_ += std::to_string(ntohs(address.sin_port));
    thread_ = std::thread([this] { serve(); });
}

LoopbackServer::~LoopbackServer() {
    stopWrite_.reset();
    thread_.join();
}

void LoopbackServer::serve() const {
    while (isReadable(listening_.get(), stopRead_.get(), Seconds(3600))) {
        const UniqueFd client(::accept(listening_.get(), nullptr, nullptr));
        if (client) serve(client.get());
    }
}

void LoopbackServer::serve(int fd) const {
    std::unique_ptr<SSL, Freed<SSL_free>> tls;
    if (tls_) {
        tls.reset(SSL_new(tls_.get()));
        SSL_set_fd(tls.get(), fd);
        if (SSL_accept(tls.get()) != 1) return;
    }
    const std::string request = receivedHead(fd, stopRead_.get(), tls.get());
    if (!request.empty()) script_(Client(fd, stopRead_.get(), tls.get()), request);
}

}  // namespace tarnik
