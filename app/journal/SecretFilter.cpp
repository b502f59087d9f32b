#include "app/journal/SecretFilter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace tarnik {
namespace {

constexpr std::string_view hidden = "[hidden]";
constexpr std::string_view quotes = "\"'`";
constexpr std::string_view breaks = " \t\r\n\"'()<>[]{},;|`";            // between the words of a text
constexpr std::string_view separators = " \t\r\n\"'()<>[]{},;|`&?=:\\";  // between names and values
constexpr std::string_view valueEnds = " \t\r\n\"'()<>[]{},;|`&";        // behind a value without quotes
constexpr std::size_t shortestSecret = 20;                               // pairing codes have 22 characters

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

std::string filteredWord(std::string_view word) {
    std::string filtered = withoutTokens(word);
    // Base64 may contain "/". In a word that isn't a path, the parts around it belong to the same secret.
    const bool isPath = word.starts_with('/') || word.contains("://");
    if (filtered != word && !isPath && word.contains('/')) return std::string(hidden);
    return filtered;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return lower;
}

bool endsWithAny(std::string_view name, std::span<const std::string_view> words) {
    const auto lower = lowerCase(name);
    return std::ranges::any_of(words, [&](std::string_view word) { return lower.ends_with(word); });
}

// Returns true if values behind this name are secret: "token", "api_key", "X-Secret".
bool namesSecret(std::string_view name) {
    constexpr std::array<std::string_view, 17> words{
        "token",         "key",    "secret",     "code",        "sig",     "password",
        "passwd",        "phrase", "pass",       "pwd",         "session", "cookie",
        "authorization", "bearer", "credential", "credentials", "auth"};
    return endsWithAny(name, words);
}

// Returns true if a value without quotes may have several words: "password: correct horse".
bool mayNameWords(std::string_view name) {
    constexpr std::array<std::string_view, 7> words{"key",    "secret", "password", "passwd",
                                                    "phrase", "pass",   "pwd"};
    return endsWithAny(name, words);
}

// Returns true if the rest of the line is secret: the value of these headers has several words.
bool namesHeader(std::string_view name) {
    const auto lower = lowerCase(name);
    return lower.ends_with("cookie") || lower.ends_with("authorization");
}

// Returns true if the value follows without ":" or "=": "--token", "Bearer".
bool precedesSecret(std::string_view name) {
    return name == "Basic" || lowerCase(name) == "bearer" || (name.starts_with("--") && namesSecret(name));
}

// Returns the length of what separates the name from its secret value, with the quote that opens the value.
// Returns 0 if the value is absent or not secret. `text` follows the name.
std::size_t lengthToValue(std::string_view name, std::string_view text) {
    const auto sign = text.find_first_not_of("\\\"'`]) \t");
    if (sign != text.npos && (text[sign] == ':' || text[sign] == '=') && namesSecret(name)) {
        const auto value = std::min(text.find_first_not_of(":= \t\r\n([{<", sign), text.size());
        const auto quote = text.find_first_not_of('\\', value);
        return quote != text.npos && quotes.contains(text[quote]) ? quote + 1 : value;
    }
    if (!precedesSecret(name)) return 0;
    const auto value = text.find_first_not_of("\\\"'`, \t\r\n");
    return value == text.npos || text.substr(0, value).find_first_of(" \t\r\n,") == text.npos ? 0 : value;
}

// Returns the length of the URL at the start of the text. A user name, a password and an IPv6 address may
// contain characters that end the rest of it.
std::size_t lengthOfUrl(std::string_view text, std::size_t schemeLength) {
    const auto authority = text.substr(0, text.find_first_of(" \t\r\n\"'`<>/?#\\", schemeLength));
    const auto at = authority.find_last_of('@');
    std::size_t host = at == authority.npos || at < schemeLength ? schemeLength : at + 1;
    constexpr std::string_view digits = "0123456789abcdefABCDEF:.";  // of an IPv6 address
    if (authority.substr(host).starts_with('[')) {
        const auto bracket = authority.find_first_not_of(digits, host + 1);
        if (bracket != authority.npos && authority[bracket] == ']') host = bracket + 1;
    }
    return std::min(text.find_first_of(breaks, host), text.size());
}

// Returns the length of the value without quotes at the start of the text.
std::size_t lengthOfWord(std::string_view text) {
    constexpr std::string_view schemeEnd = "://";
    const auto end = std::min(text.find_first_of(valueEnds), text.size());
    const auto scheme = text.substr(0, end).find(schemeEnd);
    return scheme == text.npos ? end : lengthOfUrl(text, scheme + schemeEnd.size());
}

// Returns the word at the start of the text, and the words behind it that aren't names themselves.
std::string_view takeWords(std::string_view text) {
    std::size_t end = lengthOfWord(text);
    while (end < text.size() && (text[end] == ' ' || text[end] == '\t')) {
        const auto word = text.find_first_not_of(" \t", end);
        const auto next = std::min(text.find_first_of(valueEnds, word), text.size());
        const auto following = word == text.npos ? "" : text.substr(word, next - word);
        if (following.empty() || following.starts_with("--") || following.find_first_of(":=") != text.npos)
            break;
        end = next;
    }
    return text.substr(0, end);
}

// Returns the secret value at the start of the text. `before` separates it from its name.
std::string_view takeValue(std::string_view name, std::string_view before, std::string_view text) {
    const auto line = text.substr(0, text.find('\n'));
    if (!before.empty() && quotes.contains(before.back())) {
        const char quote = before.back();
        const bool isEscaped = before.ends_with(std::string{'\\', quote});
        for (std::size_t at = 0; at < line.size(); ++at) {
            if (line[at] == quote) return line.substr(0, at);
            if (line[at] != '\\') continue;
            ++at;  // to the character that the backslash escapes
            if (isEscaped && at < line.size() && line[at] == quote) return line.substr(0, at - 1);
        }
        return line;
    }
    if (namesHeader(name)) return line;
    auto value = mayNameWords(name) ? takeWords(text) : text.substr(0, lengthOfWord(text));
    while (value.ends_with(':') || value.ends_with('=')) value.remove_suffix(1);  // it may be a name itself
    return value;
}

// Keeps the scheme and the host.
std::string withoutDetails(std::string_view url, std::size_t schemeLength) {
    std::string_view host = url.substr(schemeLength);
    const auto hostLength = std::min(host.find_first_of("/?#\\"), host.size());
    const bool hasMore = hostLength < host.size();
    const bool endsSentence = hasMore && host.ends_with('.');
    host = host.substr(0, hostLength);
    const auto userLength = host.find_last_of('@') + 1;  // npos + 1 is 0
    // Such a user name may be a part of the surrounding text, and the host a part of an e-mail address.
    const bool isDoubtful = host.substr(0, userLength).find_first_of(breaks) != host.npos;
    host = isDoubtful ? hidden : host.substr(userLength);
    return std::string(url.substr(0, schemeLength)) + std::string(host) + (hasMore ? "/" : "") +
           std::string(hasMore ? hidden : "") + (endsSentence ? "." : "");
}

}  // namespace

std::string withoutNamedSecrets(std::string_view text) {
    constexpr std::string_view schemeEnd = "://";
    std::string result;
    const auto keep = [&](std::size_t length) {
        result += text.substr(0, length);
        text.remove_prefix(length);
    };
    while (!text.empty()) {
        auto name = text.substr(0, text.find_first_of(separators));
        if (text.substr(name.size()).starts_with(schemeEnd)) {
            const auto schemeLength = name.size() + schemeEnd.size();
            const auto url = text.substr(0, lengthOfUrl(text, schemeLength));
            result += withoutDetails(url, schemeLength);
            text.remove_prefix(url.size());
            continue;
        }
        keep(name.size());
        // A value may be the name of another one: "token: Bearer abc".
        while (const auto length = name.empty() ? 0 : lengthToValue(name, text)) {
            const auto before = text.substr(0, length);
            keep(length);
            const auto value = takeValue(name, before, text);
            if (!value.empty()) result += hidden;
            text.remove_prefix(value.size());
            name = value;
        }
        if (name.empty() && !text.empty()) keep(1);
    }
    return result;
}

std::string withoutLongTokens(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto wordLength = std::min(text.find_first_of(breaks), text.size());
        result += filteredWord(text.substr(0, wordLength));
        text.remove_prefix(wordLength);
        const auto breakLength = std::min(text.find_first_not_of(breaks), text.size());
        result += text.substr(0, breakLength);
        text.remove_prefix(breakLength);
    }
    return result;
}

std::string withoutSecrets(std::string_view text) {
    return withoutLongTokens(withoutNamedSecrets(text));
}

}  // namespace tarnik
