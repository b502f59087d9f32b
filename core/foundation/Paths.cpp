#include "core/foundation/Paths.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace tarnik {

std::string standardize(std::string_view path) {
    std::vector<std::string_view> kept;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view piece = path.substr(at, end - at);
        at = end + 1;
        if (piece == "..") {
            if (!kept.empty()) kept.pop_back();
        } else if (!piece.empty() && piece != ".") {
            kept.push_back(piece);
        }
    }

    std::string plain;
    for (const std::string_view piece : kept) plain.append("/").append(piece);
    return plain.empty() ? "/" : plain;
}

std::string resolvingLinks(std::string_view path) {
    std::string plain = standardize(path);
    std::string existing = plain;
    while (existing != "/") {
        if (const auto real = realPath(existing)) return standardize(*real + plain.substr(existing.size()));
        existing = parentFolder(existing);
    }
    return plain;
}

std::optional<std::string> realPath(const std::string& path) {
    if (path.contains('\0')) return std::nullopt;  // the system would ignore the rest of the path
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
    if (!real) return std::nullopt;
    return real.get();
}

std::string parentFolder(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    if (slash == 0 || slash == std::string_view::npos) return "/";
    return std::string(path.substr(0, slash));
}

}  // namespace tarnik
