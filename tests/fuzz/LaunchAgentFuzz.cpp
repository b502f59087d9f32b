// For any launch agent file: it is taken over only if it is a property list with our label and this node
// home. A state folder in it takes precedence.

#include <algorithm>
#include <string>

#include "core/foundation/PropertyList.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/foundation/Utf8.h"
#include "core/node/LaunchdTakeover.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

const NodeHome home{.path = "/h"};

bool isTakenOver(const std::string& file) {
    const auto plan = LaunchdTakeover::plan(file, "/agent", home, 501, [](const auto& path) { return path; });
    return std::holds_alternative<LaunchdTakeover::TakeOver>(plan);
}

std::optional<std::string> textIn(const PropertyList* list, const char* key) {
    const PropertyList* const value = list != nullptr ? list->entry(key) : nullptr;
    return value != nullptr ? value->asString() : std::nullopt;
}

std::string agentWith(std::string_view stateFolder, std::string_view program) {
    const auto text = [](std::string_view content) {
        std::string string = "<string>";
        for (const char c : content) string += c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
        return string + "</string>";
    };
    return "<plist><dict><key>Label</key>" + text(TarnikIdentity::nodeLaunchdLabel) +
           "<key>EnvironmentVariables</key><dict><key>OPENCLAW_STATE_DIR</key>" + text(stateFolder) +
           "</dict><key>ProgramArguments</key><array><true/>" + text(program) + "</array></dict></plist>";
}

bool isPlain(std::string_view text) {
    const auto isControl = [](unsigned char c) { return c < 0x20; };
    return isUtf8(text) && text.size() < 4096 && std::ranges::none_of(text, isControl);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(fuzz::textOf(data, size));
    if (isTakenOver(text)) {
        const auto list = PropertyList::parse(text);
        require(list && textIn(&*list, "Label") == TarnikIdentity::nodeLaunchdLabel);
        const auto state = textIn(list->entry("EnvironmentVariables"), "OPENCLAW_STATE_DIR");
        require(!state || !state->starts_with('/') || *state == home.path);
    }

    if (!isPlain(text)) return 0;
    require(isTakenOver(agentWith(text, "relative")) == (text == "/h"));
    const bool isOurs = text == "/h/runtime/node/bin/node" || text.starts_with("/h/service-env/");
    require(isTakenOver(agentWith("relative", text)) == isOurs);
    require(!isTakenOver(agentWith("/other", text)));
    return 0;
}
