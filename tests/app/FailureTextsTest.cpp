#include "app/texts/FailureTexts.h"

#include <cerrno>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

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

}  // namespace
}  // namespace tarnik
