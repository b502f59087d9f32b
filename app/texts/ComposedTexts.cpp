#include "app/texts/ComposedTexts.h"

#include <array>

#include "app/texts/ProgramTexts.h"
#include "app/texts/RelocationTexts.h"
#include "app/texts/Translation.h"
#include "core/foundation/HttpTexts.h"
#include "core/node/InstallTexts.h"

namespace tarnik {
namespace {

using Text = std::string_view;

// The sentences with placeholders that may be inside a message.
constexpr std::array<Text, 28> patterns{
    InstallTexts::runtimeStep,
    InstallTexts::notAbsolute,
    InstallTexts::reserved,
    InstallTexts::overlapsDefault,
    InstallTexts::notAFolder,
    InstallTexts::isALink,
    InstallTexts::holdsOtherFiles,
    InstallTexts::wrongKey,
    InstallTexts::noArtifact,
    InstallTexts::download,
    InstallTexts::checksum,
    InstallTexts::extract,
    InstallTexts::notOurFolder,
    InstallTexts::tooOld,
    HttpTexts::badStatus,
    HttpTexts::notSaved,
    HttpTexts::failed,
    HttpTexts::failedThroughProxy,
    HttpTexts::proxyLogin,
    RelocationTexts::differentBuildBody,
    RelocationTexts::takeoverStuckBody,
    RelocationTexts::moveItBody,
    RelocationTexts::copyOfFolderBody,
    ProgramTexts::homeInUse,
    ProgramTexts::homeInUseByWindow,
    ProgramTexts::homeInUseByConsole,
    ProgramTexts::homeInUseByService,
    "{sentence} ({description})",
};

}  // namespace

std::string translatedMessage(const std::string& english) {
    constexpr std::size_t longest = 4096;  // a longer text has foreign output, which has no translation
    if (english.size() > longest) return english;
    auto whole = translated(english);
    if (whole != english) return whole;
    for (const auto pattern : patterns) {
        auto values = valuesOf(pattern, english);
        if (!values) continue;
        for (auto& value : *values) value.value = translatedMessage(value.value);
        return translated(pattern, *values);
    }
    return english;
}

}  // namespace tarnik
