#include "core/node/ReleaseVersion.h"

#include <string>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(ReleaseVersion, takesOnlyWholeVersions) {
    using Parts = ReleaseVersion::Parts;
    struct Case {
        std::string text;
        std::optional<Parts> parts;
    };
    const Case cases[] = {
        {"2026.1.1", Parts{2026, 1, 1, 0}},
        {"2026.1.1-12", Parts{2026, 1, 1, 12}},
        {"2026.03.007-0001", Parts{2026, 3, 7, 1}},
        {"0000.0.0", Parts{0, 0, 0, 0}},
        {"9999.99.999-9999", Parts{9999, 99, 999, 9999}},

        {"", {}},
        {"26.1.1", {}},
        {"20260.1.1", {}},
        {"2026.1", {}},
        {"2026..1", {}},
        {"2026.100.1", {}},
        {"2026.1.1000", {}},
        {"2026.1.", {}},
        {"2026.1.1.1", {}},
        {"2026.1.1-", {}},
        {"2026.1.1-12345", {}},
        {"2026.1.1-1-1", {}},
        {"2026.1.1-x", {}},
        {"2026.-1.1", {}},
        {"v2026.1.1", {}},
        {" 2026.1.1", {}},
        {"2026.1.1 ", {}},
        {"2026.1.1\n", {}},
        {std::string("2026.1.1\0", 9), {}},
        {"2026.1.\xD9\xA1", {}},  // a digit, but not one of ours
        {std::string(1'000'000, '9'), {}},
    };
    for (const auto& c : cases) EXPECT_EQ(ReleaseVersion::parts(c.text), c.parts) << c.text.substr(0, 40);
}

TEST(ReleaseVersion, ordersByNumbersYearFirst) {
    const char* const ascending[] = {"2025.12.999-9999", "2026.2.0", "2026.3.1",  "2026.3.1-1",
                                     "2026.3.1-10",      "2026.3.2", "2026.3.10", "2026.9.99",
                                     "2026.10.0",        "2027.1.1"};
    for (const auto& a : ascending)
        for (const auto& b : ascending)
            EXPECT_EQ(ReleaseVersion::compare(a, b), &a < &b ? -1 : &a > &b ? 1 : 0) << a << ' ' << b;
    EXPECT_EQ(ReleaseVersion::compare("2026.1.1", "2026.01.001-0"), 0);
    EXPECT_EQ(ReleaseVersion::compare("2026.1.1", "2026.1"), std::nullopt);
    EXPECT_EQ(ReleaseVersion::compare("2026.1", "2026.1.1"), std::nullopt);
}

}  // namespace
}  // namespace tarnik
