#include "app/texts/FailureTexts.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "app/model/AppState.h"

namespace tarnik {

TEST(FailureTexts, comesBeforeWhateverIsNoSentence) {
    using namespace FailureTexts;
    using Kind = InstallFailure::Kind;
    const SystemError file{"mkdir /x", EIO};
    const SystemError spawn{"posix_spawn /usr/bin/tar", ENOENT};
    const std::pair<InstallError, std::string_view> cases[] = {
        {file, fileFailed},
        {SystemError{"write /x", ENOSPC}, diskFull},
        {SystemError{"mkdir /x", EROFS}, notAllowed},
        {ToolStartError{spawn}, programFailed},
        {ToolStartError{{"posix_spawn /x", EAGAIN}}, tooBusy},
        {HttpError{.kind = HttpError::Kind::file, .code = EDQUOT}, diskFull},
        {HttpError{.kind = HttpError::Kind::stalled}, downloadFailed},
        {NodeRelease::Failure{.reason = NodeRelease::Failure::Reason::badSignature}, releaseRefused},
        {InstallFailure{Kind::extract, "tar: two\nlines"}, unpackFailed},
        {InstallFailure{Kind::download, "stable.json"}, ""},
        {NodeHome::ClaimError{NodeHome::ClaimError::Reason::isALink, "/x"}, ""},
    };
    for (const auto& [error, sentence] : cases) EXPECT_EQ(plainSentence(error), sentence) << describe(error);
    EXPECT_EQ(messageFor(PairingError(spawn)),
              std::string(programFailed) + " (posix_spawn /usr/bin/tar failed: No such file or directory)");
    EXPECT_EQ(messageFor(PairingError(PairingFailure::busy)), describe(PairingFailure::busy));
}

TEST(FailureCause, classifiesWhatTheUserCanRemove) {
    using enum FailureCause;
    using Kind = InstallFailure::Kind;
    using Transfer = HttpError::Kind;
    const std::pair<InstallError, std::optional<FailureCause>> cases[] = {
        {HttpError{.kind = Transfer::unresolved}, offline},
        {HttpError{.kind = Transfer::proxyLogin}, proxyLogin},
        {InstallFailure{Kind::download, "stable.json", 407}, proxyLogin},
        {InstallFailure{Kind::download, "stable.json", 511}, captivePortal},
        {InstallFailure{Kind::download, "stable.json", 404}, std::nullopt},
        {NodeRelease::Failure{.reason = NodeRelease::Failure::Reason::notJSON}, captivePortal},
        {NodeRelease::Failure{.reason = NodeRelease::Failure::Reason::badSignature}, std::nullopt},
        {HttpError{.kind = Transfer::notValidNow}, clock},
        {HttpError{.kind = Transfer::untrusted}, untrustedCertificate},
        {HttpError{.kind = Transfer::file, .code = EDQUOT}, diskFull},
        {InstallFailure{Kind::extract, "tar: bin/node: Cannot write: No space left on device"}, diskFull},
        {InstallFailure{Kind::extract, "tar: damaged"}, std::nullopt},
        {ToolStartError{{"posix_spawn /x", EACCES}}, notAllowed},
    };
    for (const auto& [error, cause] : cases) EXPECT_EQ(causeOf(error), cause) << describe(error);
    EXPECT_EQ(std::get<Setups::Failed>(failedSetup(SystemError{"write /x", ENOSPC})).cause, std::nullopt)
        << "the sentence says it already";
}

}  // namespace tarnik
