// For any defaults file: after a change the file can be parsed, the flag is set and all other members are as
// before. A file that couldn't be parsed is kept beside it unchanged.

#include <fstream>
#include <string>

#include <unistd.h>

#include "app/platform/DefaultsFile.h"
#include "core/foundation/Files.h"
#include "tests/fuzz/Require.h"
#include "tests/support/TemporaryFolder.h"

using namespace tarnik;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    static const std::string name = "defaults.json", path = folder.path() + "/" + name;
    static const std::string aside = path + std::string(DefaultsFile::asideSuffix);
    const std::string text(fuzz::textOf(data, size));
    std::ofstream(path) << text;
    ::unlink(aside.c_str());
    const auto before = Json::parse(text, DefaultsFile::maxBytes);
    const auto fail = [](const std::string&) { std::abort(); };

    DefaultsFile file(path, fail);
    const auto home = file.text("NodeHome");
    const bool flag = file.flag("Other");
    file.setFlag("AccessibilityWasOn");

    const DefaultsFile again(path, fail);
    require(again.flag("AccessibilityWasOn") && again.text("NodeHome") == home &&
            again.flag("Other") == flag);
    const auto after = Json::parse(folder.read(name), 8 * DefaultsFile::maxBytes);
    require(after && after->isObject());
    const bool wasBroken = !before || !before->isObject();
    require((::access(aside.c_str(), F_OK) == 0) == wasBroken);
    if (wasBroken) {
        require(folder.read(name + std::string(DefaultsFile::asideSuffix)) == text);
        return 0;
    }
    for (const auto& [key, value] : before->members()) {
        const Json* const kept = after->member(key);
        require(kept != nullptr && (key == "AccessibilityWasOn" || kept->text() == value.text()));
    }
    return 0;
}
