#include "app/platform/CfText.h"

#include <array>
#include <climits>

namespace tarnik::CfText {

namespace {

const UInt8* bytes(std::string_view text) {
    return reinterpret_cast<const UInt8*>(text.data());
}

CFIndex length(std::string_view text) {
    return static_cast<CFIndex>(text.size());
}

}  // namespace

CfOwner<CFStringRef> of(std::string_view text) {
    return CfOwner(
        ::CFStringCreateWithBytes(nullptr, bytes(text), length(text), kCFStringEncodingUTF8, false));
}

std::optional<std::string> text(CFTypeRef value) {
    if (value == nullptr || ::CFGetTypeID(value) != ::CFStringGetTypeID()) return std::nullopt;
    const auto string = static_cast<CFStringRef>(value);
    const CFIndex most =
        ::CFStringGetMaximumSizeForEncoding(::CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    std::string found(static_cast<std::size_t>(most), '\0');
    if (!::CFStringGetCString(string, found.data(), most, kCFStringEncodingUTF8)) return std::nullopt;
    found.resize(found.find('\0'));
    return found;
}

CfOwner<CFURLRef> folderURL(std::string_view path) {
    return CfOwner(::CFURLCreateFromFileSystemRepresentation(nullptr, bytes(path), length(path), true));
}

std::optional<std::string> path(CFURLRef url) {
    std::array<char, PATH_MAX> found{};
    if (url == nullptr) return std::nullopt;
    if (!::CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8*>(found.data()),
                                            found.size())) {
        return std::nullopt;
    }
    return std::string(found.data());
}

}  // namespace tarnik::CfText
