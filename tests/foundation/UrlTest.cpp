#include "core/foundation/Url.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

// The address in its pieces, in one line; "none" when there is no such address.
std::string pieces(std::string_view text) {
    const auto url = Url::parse(text);
    if (!url) return "none";
    std::string line = url->scheme() + " " + url->host().value_or("-") + " " + url->port().value_or("-") +
                       " " + std::string(url->path());
    if (url->hasUserInfo()) line += " user";
    if (url->hasQuery()) line += " query";
    for (const auto& item : url->queryItems()) line += " " + item.name + "=" + item.value.value_or("(none)");
    return line + (url->hasFragment() ? " fragment" : "");
}

TEST(Url, takesAnAddressApart) {
    struct Case {
        std::string text;
        std::string pieces;
    };
    const Case cases[] = {
        {"HTTPS://Example.COM:0443/C/%63%2Fx//", "https example.com 0443 /C/%63%2Fx//"},
        {"tarnik://connect?a=1&code=x+y%2B%2525&b&c=#f",
         "tarnik connect -  query a=1 code=x+y+%25 b=(none) c= fragment"},
        {"http://[::1]:1/?", "http [::1] 1 / query"},
        {"http://h?#f", "http h -  query fragment"},
        {"tarnik:?#?a", "tarnik - -  query fragment"},
        {"tarnik:a#?b", "tarnik - - a fragment"},
        {"tarnik:?&=&a=b=%26", "tarnik - -  query =(none) = a=b=&"},
        {"http://h#", "http h -  fragment"},
        {"http://a:b@h", "http h -  user"},
        {"http://@h", "http h -  user"},
        {"http://:@h", "http h -  user"},
        {"http://h:65535", "http h 65535 "},
        {"http://h:65536", "none"},
        {"http://h:18446744073709551617", "none"},
        {"http://h:", "none"},
        {"http://h:/c", "none"},
        {"http://h:8o", "none"},
        {"https:///c", "https - - /c"},
        {"https:/c", "https - - /c"},
        {"tarnik:connect", "tarnik - - connect"},
        {"http://%68", "none"},
        {"http://[fe80::1%25en0]/", "none"},
        {"http%3A//h", "none"},
        {"//h/c", "none"},
        {"h/c", "none"},
        {"", "none"},
        {" http://h", "none"},
        {"http://h/a b", "none"},
        {"http://h/%zz", "none"},
        {"http://h/%4", "none"},
        {"http://h/\xC3\xA9", "none"},
        {"http://h\\@g/", "none"},
        {"http://h@g@i/", "none"},
        {"http://h:1:2/", "none"},
        {"http://127.0.0.1.example/", "none"},
        {"http://127.0.0.1@example/", "http example - / user"},
        {"http://127.0.0.1:1@example/", "http example - / user"},
        {"http://[::1]example/", "none"},
        {std::string("http://h/\0", 10), "none"},
        {std::string("http://h\0.com/", 14), "none"},
    };
    for (const auto& c : cases) EXPECT_EQ(pieces(c.text), c.pieces) << c.text;

    const std::string start = "http://h/";
    EXPECT_TRUE(Url::parse(start + std::string(Url::maxBytes - start.size(), 'a')));
    EXPECT_FALSE(Url::parse(start + std::string(Url::maxBytes - start.size() + 1, 'a')));
    EXPECT_FALSE(Url::parse(start + std::string(10'000'000, '%')));
}

TEST(Url, appendsOneComponentAfterOneSlash) {
    struct Case {
        const char* url;
        const char* component;
        const char* result;
    };
    const Case cases[] = {
        {"http://H", "c", "http://H/c"},
        {"http://h/", "c", "http://h/c"},
        {"http://h:8//", "c", "http://h:8/c"},
        {"http://h/a%2F/b/?q=/#f/", "c", "http://h/a%2F/b/c?q=/#f/"},
        {"http://h?q#f", "c", "http://h/c?q#f"},
        {"tarnik:?q#f", "c", "tarnik:/c?q#f"},
        {"http://h/", "a-Z_0.9~", "http://h/a-Z_0.9~"},
        {"http://h/", "../a b?#%2F\xC3\xA9", "http://h/..%2Fa%20b%3F%23%252F%C3%A9"},
    };
    for (const auto& c : cases) {
        const Url longer = Url::parse(c.url)->appending(c.component);
        EXPECT_EQ(longer.text(), c.result);
        EXPECT_EQ(longer, Url::parse(c.result)) << "the pieces go with the text";
    }
}

}  // namespace
}  // namespace tarnik
