#include "app/texts/RelocationTexts.h"

#include "core/foundation/Paths.h"

namespace tarnik::Relocation {

namespace {

// Returns the folder of the user's copy in typographic quotes.
std::string quotedFolder(const Launch& launch) {
    return "“" + parentFolder(launch.realPath()) + "”";
}

}  // namespace

Message differentBuildMessage(const Launch& launch) {
    return {.title = "This is a different build of tarnik",
            .body =
                "The tarnik in your Applications folder is a different build from this one, so this one "
                "is running from " +
                quotedFolder(launch) + " and the one in Applications is untouched."};
}

Message takeoverStuckMessage(const Launch& launch) {
    return {.title = "The older tarnik is still running",
            .body =
                "An older tarnik is still running from your Applications folder and would not quit, so "
                "this newer one is running from " +
                quotedFolder(launch) +
                " for now. Quit tarnik from the menu bar at the top of your screen, then open the new "
                "one again."};
}

Message runHereMessage(const Launch& launch, std::string_view installPath) {
    if (!launch.isTranslocated) {
        return {.title = "Move tarnik to Applications",
                .body = "tarnik is running from " + quotedFolder(launch) +
                        ", not your Applications folder, so the switches you turn on may not stick. Quit "
                        "tarnik, drag it into your Applications folder in Finder, and open it from there."};
    }
    const std::string title = "tarnik is running from a temporary copy";
    if (launch.originalPath && launch.realPath() == installPath) {
        return {.title = title,
                .body =
                    "macOS is still running tarnik from a temporary copy instead of from your "
                    "Applications folder, so the switches you turn on may not stick. Quit tarnik, drag "
                    "it from Applications to your Desktop and back into Applications in Finder, then "
                    "open it from there."};
    }
    const std::string place = launch.originalPath ? quotedFolder(launch) : "where you downloaded it";
    return {.title = title,
            .body = "macOS is still running tarnik from a temporary copy instead of from " + place +
                    ", so the switches you turn on may not stick. Quit tarnik, drag it into your "
                    "Applications folder in Finder, and open it from there."};
}

}  // namespace tarnik::Relocation
