#include "app/texts/RelocationTexts.h"

#include "core/foundation/Paths.h"
#include "core/foundation/Placeholders.h"

namespace tarnik::Relocation {

namespace {

using namespace RelocationTexts;

// Returns the message with the folder of the user's copy in it.
Message message(Text title, Text body, const Launch& launch) {
    return {.title = std::string(title), .body = filled(body, {{"folder", parentFolder(launch.realPath())}})};
}

}  // namespace

Message differentBuildMessage(const Launch& launch) {
    return message(differentBuild, differentBuildBody, launch);
}

Message takeoverStuckMessage(const Launch& launch) {
    return message(takeoverStuck, takeoverStuckBody, launch);
}

Message runHereMessage(const Launch& launch, std::string_view installPath) {
    if (!launch.isTranslocated) return message(moveIt, moveItBody, launch);
    if (!launch.originalPath) return message(temporaryCopy, copyOfDownloadBody, launch);
    const bool isInstalled = launch.realPath() == installPath;
    return message(temporaryCopy, isInstalled ? copyOfApplicationsBody : copyOfFolderBody, launch);
}

}  // namespace tarnik::Relocation
