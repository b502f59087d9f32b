#include "app/OwnBundle.h"

namespace tarnik {

std::optional<std::string> bundleOf(std::string_view executable) {
    constexpr std::string_view inside = "/Contents/MacOS";
    const auto slash = executable.rfind('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto folder = executable.substr(0, slash);
    if (!folder.ends_with(inside) || folder.size() == inside.size()) return std::nullopt;
    return std::string(folder.substr(0, folder.size() - inside.size()));
}

}  // namespace tarnik
