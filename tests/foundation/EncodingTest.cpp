#include "core/foundation/Encoding.h"

#include <gtest/gtest.h>

#include "tests/support/Words.h"

namespace tarnik {

TEST(Encoding, decodesOnlyCompleteBase64) {
    const std::pair<std::string, const char*> taken[] = {{"foobar", "Zm9vYmFy"},
                                                         {"fo", "Zm8= Zm8"},
                                                         {"f", "Zg== Zg= Zg"},
                                                         {std::string(3, 0), "AAAA"},
                                                         {"\xFB\xFF\xBF", "+_-/"}};
    for (const auto& [bytes, texts] : taken)
        for (const auto& text : words(texts)) EXPECT_EQ(decodeBase64(text), bytes) << text;

    // Wrong lengths and padding, bits behind the last byte, other characters.
    auto refused = words("AAAAA A=== = Zm9v= Zg=== Zg==Zm9v Zh== Zm9= Zm9* Zm9\u00FC");
    refused.insert(refused.end(), {" Zm9v", "Zm9v\n", "Zm9v\nYmFy", {"Zm9\0", 4}});
    for (const auto& text : refused) EXPECT_EQ(decodeBase64(text), std::nullopt) << text;
}

}  // namespace tarnik
