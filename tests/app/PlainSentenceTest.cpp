#include "app/model/PlainSentence.h"

#include <cerrno>

#include <gtest/gtest.h>

#include "app/model/WindowTexts.h"

namespace tarnik {
namespace {

TEST(PlainSentence, comesBeforeWhateverIsNoSentence) {
    using namespace WindowTexts;
    using Kind = InstallFailure::Kind;
    const FileError file{"mkdir /x", EIO};
    const SpawnError spawn{"posix_spawn /usr/bin/tar", ENOENT};
    const std::pair<InstallError, std::string_view> cases[] = {
        {file, fileFailed},
        {FileError{"write /x", ENOSPC}, diskFull},
        {FileError{"mkdir /x", EROFS}, notAllowed},
        {spawn, programFailed},
        {SpawnError{"forkpty", EAGAIN}, tooBusy},
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
