#include "app/journal/SecretFilter.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnik {
namespace {

constexpr std::string_view hidden = "[hidden]";
constexpr std::string_view breaks = " \t\r\n\"'()<>[]{},;|`";  // between the words of a text
constexpr std::size_t shortestSecret = 20;                     // pairing codes have 22 characters

// "-" and "_" are in base64url, "+" in base64. "/" is not included, because it separates the names in a path.
bool isTokenCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '_' || character == '+';
}

// Replaces each long run of token characters.
std::string withoutTokens(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto isToken = isTokenCharacter(text.front());
        const auto* const end = std::ranges::find_if(
            text, [isToken](char character) { return isTokenCharacter(character) != isToken; });
        const auto length = static_cast<std::size_t>(end - text.begin());
        result += isToken && length >= shortestSecret ? hidden : text.substr(0, length);
        text.remove_prefix(length);
    }
    return result;
}

// Returns true if values behind this name are secret: "token", "api_key", "X-Secret".
bool namesSecret(std::string_view name) {
    constexpr std::array<std::string_view, 11> words{"token",  "key",           "secret", "code",
                                                     "sig",    "password",      "passwd", "pwd",
                                                     "cookie", "authorization", "bearer"};
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return std::ranges::any_of(words, [&](std::string_view word) { return lower.ends_with(word); });
}

// Keeps the scheme and the host.
std::string withoutAddress(std::string_view url, std::size_t schemeLength) {
    std::string_view host = url.substr(schemeLength);
    const auto hostLength = std::min(host.find_first_of("/?#\\"), host.size());
    const bool hasMore = hostLength < host.size();
    host = host.substr(0, hostLength);
    host.remove_prefix(host.find_last_of('@') + 1);  // npos + 1 is 0
    return std::string(url.substr(0, schemeLength)) + withoutTokens(host) + (hasMore ? "/" : "") +
           std::string(hasMore ? hidden : "");
}

std::string filteredWord(std::string_view word, bool isSecret) {
    constexpr std::string_view schemeEnd = "://";
    if (isSecret) return std::string(hidden);
    if (const auto scheme = word.find(schemeEnd); scheme != word.npos)
        return withoutAddress(word, scheme + schemeEnd.size());
    const auto equals = word.find_first_of("=:");
    if (equals != word.npos && equals + 1 < word.size() && namesSecret(word.substr(0, equals)))
        return std::string(word.substr(0, equals + 1)) + std::string(hidden);
    std::string filtered = withoutTokens(word);
    // Base64 may contain "/". In a word that is no path, the parts around it belong to the same secret.
    if (filtered != word && !word.starts_with('/') && word.contains('/')) return std::string(hidden);
    return filtered;
}

// Returns true if the word after this one is secret: "token:", "--key=", "Bearer".
bool announcesSecret(std::string_view word) {
    if (word == "Bearer" || word == "Basic") return true;
    return (word.ends_with(':') || word.ends_with('=')) && namesSecret(word.substr(0, word.size() - 1));
}

}  // namespace

std::string withoutSecrets(std::string_view text) {
    std::string result;
    bool isSecret = false;  // the next word
    bool isName = false;    // the last word, of a secret
    while (!text.empty()) {
        const auto wordLength = std::min(text.find_first_of(breaks), text.size());
        const auto word = text.substr(0, wordLength);
        if (word == ":" || word == "=") {  // as in "token": "..."
            result += word;
            isSecret = isName;
        } else if (!word.empty()) {
            result += filteredWord(word, isSecret);
            isSecret = announcesSecret(word);
            isName = namesSecret(word);
        }
        text.remove_prefix(wordLength);
        const auto breakLength = std::min(text.find_first_not_of(breaks), text.size());
        result += text.substr(0, breakLength);
        text.remove_prefix(breakLength);
    }
    return result;
}

}  // namespace tarnik
