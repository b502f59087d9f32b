#include "core/foundation/Base64.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(Base64, takesOnlyWholeAndCleanText) {
    struct Case {
        const char* why;
        std::string text;
        std::optional<std::string> bytes;
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"no padding needed", "Zm9v", "foo"},
        {"one padded", "Zm8=", "fo"},
        {"two padded", "Zg==", "f"},
        {"padding left out", "Zm8", "fo"},
        {"both left out", "Zg", "f"},
        {"one of two left out", "Zg=", "f"},
        {"several groups", "Zm9vYmFy", "foobar"},
        {"the standard alphabet", "+/+/", "\xFB\xFF\xBF"},
        {"that of URLs", "-_-_", "\xFB\xFF\xBF"},
        {"a mixture", "+_-/", "\xFB\xFF\xBF"},
        {"zeros", "AAAA", std::string(3, '\0')},

        {"a length that can't be", "AAAAA", std::nullopt},
        {"one digit, padded", "A===", std::nullopt},
        {"bits behind one byte", "Zh==", std::nullopt},
        {"bits behind two bytes", "Zm9=", std::nullopt},
        {"padding alone", "=", std::nullopt},
        {"a group of padding", "Zm9v====", std::nullopt},
        {"padding not needed", "Zm9v=", std::nullopt},
        {"too much padding", "Zg===", std::nullopt},
        {"padding inside", "Zg==Zm9v", std::nullopt},
        {"a blank before", " Zm9v", std::nullopt},
        {"a line end behind", "Zm9v\n", std::nullopt},
        {"a line end inside", "Zm9v\nYmFy", std::nullopt},
        {"a NUL", std::string("Zm9\0", 4), std::nullopt},
        {"another character", "Zm9*", std::nullopt},
        {"not ASCII", "Zm9\xC3\xBC", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(decodeBase64(c.text), c.bytes) << c.why;
}

}  // namespace
}  // namespace tarnik
