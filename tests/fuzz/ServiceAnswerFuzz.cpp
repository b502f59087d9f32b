// For any answer of the service: a join URL is accepted only from a complete answer of version 1. It is the
// exact text of the answer, uses https or this machine, and has only a path, which ends with the code.

#include <string>

#include "core/foundation/Json.h"
#include "core/foundation/Utf8.h"
#include "core/pairing/JoinLink.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

const std::string code(22, 'A');

void checkAddress(const std::string& address) {
    const auto url = Url::parse(address);
    require(url && (url->scheme() == "https" ||
                    (url->scheme() == "http" && (url->host() == "localhost" || url->host() == "127.0.0.1"))));
    require(address.find_first_of("?# \n") == address.npos && address.ends_with("/c/" + code));
    const std::string authority = address.substr(0, address.find('/', address.find("//") + 2));
    require(!authority.contains('@'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(fuzz::textOf(data, size));
    if (const auto url = JoinLink::joinURL(text, code)) {
        checkAddress(url->text());
        require(text.size() <= JoinLink::maxAnswerBytes);
        require(!JoinLink::joinURL(text + "x", code) && !JoinLink::joinURL(text, std::string(22, 'B')));
    }

    if (!isUtf8(text)) return 0;
    const std::string join = R"(,"join":)" + quotedJson(text) + "}";
    const auto url = JoinLink::joinURL(R"({"v":1)" + join, code);
    require(!url || url->text() == text);
    if (url) checkAddress(text);
    for (const char* version : {"2", "\"1\"", "true", "1,\"v\":1"})
        require(!JoinLink::joinURL(R"({"v":)" + std::string(version) + join, code));
    return 0;
}
