#include "app/model/PlainSentence.h"

#include <cerrno>

#include "app/model/WindowTexts.h"

namespace tarnik {
namespace {

using Text = WindowTexts::Text;

// Returns an empty text for a code that needs the failed operation to be understood.
Text sentenceForCode(int code) {
    switch (code) {
        case EAGAIN:
        case ENOMEM:
        case EMFILE:
        case ENFILE: return WindowTexts::tooBusy;
        case ENOSPC:
        case EDQUOT: return WindowTexts::diskFull;
        case EACCES:
        case EPERM:
        case EROFS: return WindowTexts::notAllowed;
        default: return {};
    }
}

Text sentenceForCode(int code, Text otherwise) {
    const Text sentence = sentenceForCode(code);
    return sentence.empty() ? otherwise : sentence;
}

Text sentenceForStart(const SystemError& error) {
    return sentenceForCode(error.code, WindowTexts::programFailed);
}

struct InstallSentence {
    Text operator()(const InstallFailure& failure) const {
        return failure.kind == InstallFailure::Kind::extract ? WindowTexts::unpackFailed : Text();
    }
    Text operator()(const NodeRelease::Failure&) const { return WindowTexts::releaseRefused; }
    Text operator()(const NodeHome::ClaimError&) const { return {}; }
    Text operator()(const SystemError& error) const { return plainSentence(error); }
    Text operator()(const ToolStartError& failure) const { return sentenceForStart(failure.error); }
    Text operator()(const HttpError& error) const {
        const bool isOfFile = error.kind == HttpError::Kind::file;
        return isOfFile ? sentenceForCode(error.code, WindowTexts::fileFailed) : WindowTexts::downloadFailed;
    }
};

}  // namespace

std::string_view plainSentence(const SystemError& error) {
    return sentenceForCode(error.code, WindowTexts::fileFailed);
}

std::string_view plainSentence(const InstallError& error) {
    return std::visit(InstallSentence(), error);
}

std::string_view plainSentence(const PairingError& error) {
    const auto* start = std::get_if<SystemError>(&error);
    return start != nullptr ? sentenceForStart(*start) : Text();
}

std::string sentenceThenWords(std::string_view sentence, const std::string& words) {
    if (sentence.empty() || words.empty()) return std::string(sentence) + words;
    return std::string(sentence) + " (" + words + ")";
}

Setups::Failed failedSetup(const InstallError& error) {
    return {.text = describe(error), .sentence = std::string(plainSentence(error))};
}

}  // namespace tarnik
