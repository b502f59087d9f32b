#include "app/texts/FailureTexts.h"

#include <cerrno>

namespace tarnik {
namespace {

using Text = FailureTexts::Text;

// Returns an empty text if the sentence depends on the failed operation.
Text sentenceForCode(int code) {
    switch (code) {
        case EAGAIN:
        case ENOMEM:
        case EMFILE:
        case ENFILE: return FailureTexts::tooBusy;
        case ENOSPC:
        case EDQUOT: return FailureTexts::diskFull;
        case EACCES:
        case EPERM:
        case EROFS: return FailureTexts::notAllowed;
        default: return {};
    }
}

Text sentenceForCode(int code, Text otherwise) {
    const Text sentence = sentenceForCode(code);
    return sentence.empty() ? otherwise : sentence;
}

Text sentenceForStart(const SystemError& error) {
    return sentenceForCode(error.code, FailureTexts::programFailed);
}

struct InstallSentence {
    Text operator()(const InstallFailure& failure) const {
        return failure.kind == InstallFailure::Kind::extract ? FailureTexts::unpackFailed : Text();
    }
    Text operator()(const NodeRelease::Failure&) const { return FailureTexts::releaseRefused; }
    Text operator()(const NodeHome::ClaimError&) const { return {}; }
    Text operator()(const SystemError& error) const { return plainSentence(error); }
    Text operator()(const ToolStartError& failure) const { return sentenceForStart(failure.error); }
    Text operator()(const HttpError& error) const {
        const bool isOfFile = error.kind == HttpError::Kind::file;
        return isOfFile ? sentenceForCode(error.code, FailureTexts::fileFailed)
                        : FailureTexts::downloadFailed;
    }
};

}  // namespace

std::string_view plainSentence(const SystemError& error) {
    return sentenceForCode(error.code, FailureTexts::fileFailed);
}

std::string_view plainSentence(const InstallError& error) {
    return std::visit(InstallSentence(), error);
}

std::string_view plainSentence(const PairingError& error) {
    const auto* start = std::get_if<SystemError>(&error);
    return start != nullptr ? sentenceForStart(*start) : Text();
}

std::string withDescription(std::string_view sentence, const std::string& description) {
    if (sentence.empty() || description.empty()) return std::string(sentence) + description;
    return std::string(sentence) + " (" + description + ")";
}

}  // namespace tarnik
