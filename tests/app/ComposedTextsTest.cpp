#include "app/texts/ComposedTexts.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "app/texts/FailureTexts.h"
#include "app/texts/ProgramTexts.h"
#include "app/texts/RelocationTexts.h"
#include "app/texts/Translation.h"
#include "core/node/InstallFailure.h"
#include "core/node/InstallTexts.h"

namespace tarnik {
namespace {

// Returns every message for the window that core/ or app/ composes with a value.
std::vector<std::string> composedMessages() {
    std::vector<std::string> messages{InstallTexts::downloadingRuntime("22.1"),
                                      describe(HttpError{.kind = HttpError::Kind::badStatus, .code = 404}),
                                      describe(HttpError{.kind = HttpError::Kind::file, .code = ENOSPC}),
                                      describe(HttpError{.kind = HttpError::Kind::transport, .text = "x"}),
                                      NodeRelease::describe({NodeRelease::Failure::Reason::wrongKey, "k"}),
                                      ProgramTexts::nodeHomeInUse("/home", std::nullopt)};
    using Claim = NodeHome::ClaimError::Reason;
    for (const auto reason : {Claim::notAFolder, Claim::isALink, Claim::holdsOtherFiles})
        messages.push_back(describe(NodeHome::ClaimError{.reason = reason, .path = "/home"}));
    using Resolve = NodeHome::ResolveError::Reason;
    for (const auto reason : {Resolve::notAbsolute, Resolve::reserved, Resolve::overlapsDefault})
        messages.push_back(describe(NodeHome::ResolveError{.reason = reason, .path = "/home"}));
    using Install = InstallFailure::Kind;
    for (const auto kind : {Install::noArtifact, Install::download, Install::checksum, Install::extract,
                            Install::notOurFolder, Install::tooOld})
        messages.push_back(describe(InstallFailure{.kind = kind, .what = "Node.js"}));
    using Face = NodeHomeOwner::Face;
    for (const auto face : {Face::window, Face::console, Face::service})
        messages.push_back(ProgramTexts::nodeHomeInUse("/home", NodeHomeOwner::Owner{1, face}));
    const Relocation::Launch copy{.bundlePath = "/folder/tarnik.app"};
    const Relocation::Launch temporary{copy.bundlePath, true, "/original/tarnik.app"};
    for (const auto& message :
         {Relocation::differentBuildMessage(copy), Relocation::takeoverStuckMessage(copy),
          Relocation::runHereMessage(copy), Relocation::runHereMessage(temporary)})
        messages.push_back(message.body);
    return messages;
}

TEST(ComposedTexts, findsTheTextOfEachMessage) {
    setTranslator({.text = [](auto english) { return english.contains('{') ? "translated" : ""; },
                   .countedText = {},
                   .number = {},
                   .timeOfDay = {}});
    for (const auto& message : composedMessages())
        EXPECT_EQ(translatedMessage(message), "translated") << message;
    EXPECT_EQ(translatedMessage("unknown"), "unknown");

    setTranslator({.text = [](auto english) { return english == "It failed." ? "Misslungen." : ""; },
                   .countedText = {},
                   .number = {},
                   .timeOfDay = {}});
    EXPECT_EQ(translatedMessage("It failed. (open /x failed)"), "Misslungen. (open /x failed)");
    setTranslator({});
}

}  // namespace
}  // namespace tarnik
