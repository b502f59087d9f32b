#include "core/node/ReleaseVersion.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/Words.h"

namespace tarnik {

TEST(ReleaseVersion, acceptsOnlyCompleteVersions) {
    using Parts = ReleaseVersion::Parts;
    for (const auto& [text, parts] : {std::pair("2026.1.1", Parts{2026, 1, 1, 0}),
                                      {"2026.03.007-0012", {2026, 3, 7, 12}},
                                      {"9999.99.999-9999", {9999, 99, 999, 9999}}})
        EXPECT_EQ(ReleaseVersion::parts(text), parts) << text;

    auto refused = words(
        "26.1.1 20260.1.1 2026.1 2026..1 2026.100.1 2026.1.1000 2026.1. 2026.1.1.1 2026.1.1- "
        "2026.1.1-12345 2026.1.1-1-1 2026.1.1-x 2026.-1.1 v2026.1.1 2026.1.\u0661");
    refused.insert(refused.end(),
                   {"", " 2026.1.1", "2026.1.1\n", {"2026.1.1\0", 9}, std::string(1'000'000, '9')});
    for (const auto& text : refused) EXPECT_EQ(ReleaseVersion::parts(text), std::nullopt) << text;
}

TEST(ReleaseVersion, comparesNumbersFromTheYearOn) {
    const auto ascending = words(
        "2025.12.999-9999 2026.2.0 2026.3.1 2026.3.1-1 2026.3.1-10 2026.3.2 2026.3.10 2026.10.0 2027.1.1");
    for (const auto& a : ascending)
        for (const auto& b : ascending)
            EXPECT_EQ(ReleaseVersion::compare(a, b), &a < &b ? -1 : &a > &b ? 1 : 0) << a << ' ' << b;
    EXPECT_EQ(ReleaseVersion::compare("2026.1.1", "2026.01.001-0"), 0);
    for (const auto& [a, b] : {std::pair("2026.1.1", "2026.1"), {"2026.1", "2026.1.1"}})
        EXPECT_EQ(ReleaseVersion::compare(a, b), std::nullopt);
}

}  // namespace tarnik
