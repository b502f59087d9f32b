#include "core/foundation/Json.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(Json, escapesOnlyWhatMustBeEscaped) {
    EXPECT_EQ(quotedJson(""), R"("")");
    EXPECT_EQ(quotedJson("a/b \"c\" \\d\x7F \xC3\xA9"), "\"a/b \\\"c\\\" \\\\d\x7F \xC3\xA9\"");
    EXPECT_EQ(quotedJson(std::string_view("\t\n\r\b\0\x1F", 6)), R"("\t\n\r\u0008\u0000\u001f")");
}

}  // namespace
}  // namespace tarnik
