#include "core/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"

namespace tarnik {
namespace {

using namespace propertyLists;

// Dictionaries are asked for "a"; "none" when there is no list, "other" for what is told apart no further.
std::string summary(std::string_view bytes) {
    const auto list = PropertyList::parse(bytes);
    if (!list) return "none";
    const PropertyList* value = list->isDictionary() ? list->entry("a") : &*list;
    if (value == nullptr) return "no a";
    if (const auto text = value->asString()) return *text;
    std::string texts;
    for (const auto& element : value->elements()) texts += element.asString().value_or("other") + ",";
    return texts.empty() ? "other" : texts;
}

std::string nestedXml(std::size_t depth, const std::string& opening, const std::string& closing) {
    std::string body;
    for (std::size_t i = 0; i < depth; ++i) body += opening;
    for (std::size_t i = 0; i < depth; ++i) body += closing;
    return xml(body);
}

// Each array holds the next one `width` times.
std::string nestedBinary(std::size_t depth, std::size_t width) {
    std::vector<std::string> objects;
    for (std::size_t i = 1; i < depth; ++i) objects.push_back(binaryArray(std::vector(width, i)));
    objects.push_back(binaryArray({}));
    return binary(objects);
}

std::string binaryEntry(const std::string& key) {
    return binary({binaryDictionary({1, 2}), key, binaryText("x\u00E9")});
}

struct Case {
    const char* why;
    std::string bytes;
    std::string summary = "none";
};

TEST(PropertyList, readsXmlAndNothingLikeIt) {
    const std::string list = xml("<dict><key>a</key><string>x &lt;</string></dict>");
    const Case cases[] = {
        {"a byte-order mark and blanks", "\uFEFF \n" + list, "x <"},
        {"without a prologue", "<plist><string>x</string></plist>", "x"},
        {"an array", xml("<array><string>x</string><integer>1</integer><true/><string/></array>"),
         "x,other,other,,"},
        {"a missing entry", xml("<dict><key>aa</key><string>x</string></dict>"), "no a"},
        {"a key twice", xml("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"),
         "2"},
        {"a text that isn't UTF-8", xml("<string>\xFF</string>"), "other"},
        {"as many containers as may be", nestedXml(PropertyList::maxContainers, "<array>", "</array>"),
         "other,"},
        {"one more", nestedXml(PropertyList::maxContainers + 1, "<array>", "</array>")},
        {"nested very deep, closed in comments only", nestedXml(2000, "<array><!--</array>-->", "")},
        {"too large", list + std::string(PropertyList::maxBytes, ' ')},
        {"cut short", list.substr(0, list.size() - 20)},
        {"a NUL", xml(std::string_view("<string>\0</string>", 18))},
        {"another document", "<?xml version=\"1.0\"?><html/>"},
        {"the old text form", "{ a = x; }"},
        {"JSON", R"({"a":"x"})"},
        {"nothing", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

TEST(PropertyList, readsBinaryWithinItsBounds) {
    const std::string good = binaryEntry(binaryText("a"));
    const std::string utf16 = binaryObject(6, 2, std::string("\0x\x20\xAC", 4));
    const std::string large = binaryText(std::string(20'000, 'x'));
    // With another byte, so far from the end.
    const auto spoilt = [&](std::size_t fromEnd) {
        return std::string(good).replace(good.size() - fromEnd, 1, "\x7F");
    };
    const Case cases[] = {
        {"a dictionary", good, "x\u00E9"},
        {"a key twice",
         binary({binaryDictionary({1, 1, 2, 3}), binaryText("a"), binaryText("1"), binaryText("2")}), "2"},
        {"kinds of values", binary({binaryArray({1, 2, 3, 2}), utf16, "\x09", "\x10\x01"}),
         "x\u20AC,other,other,other,"},
        {"a short count", binary({"\x51x"}), "x"},
        {"as many containers as may be", nestedBinary(PropertyList::maxContainers, 1), "other,"},
        {"one more", nestedBinary(PropertyList::maxContainers + 1, 1)},
        {"small, and endless once unfolded", nestedBinary(40, 2)},
        {"one large text, many times", binary({binaryArray(std::vector<std::size_t>(1000, 1)), large})},
        {"an array within itself", binary({binaryArray({0})})},
        {"a reference to nothing", binary({binaryArray({1})})},
        {"a key with a NUL", binaryEntry(binaryText(std::string("a\0b", 3)))},
        {"a wide key with a NUL", binaryEntry(binaryObject(6, 2, std::string("\0a\0\0", 4)))},
        {"a key that is no text", binaryEntry(binaryArray({}))},
        {"an object that runs over the end", binary({binaryObject(5, 60'000, "x")})},
        {"a count that is no number", binary({"\x5F\x51\x01x"})},
        {"a set", binary({binaryObject(12, 0, "")})},
        {"a table behind the end", spoilt(1)},
        {"more objects than bytes", spoilt(24)},
        {"the beginning alone", "bplist00"},
        {"another version", "bplist15" + good.substr(8)},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

}  // namespace
}  // namespace tarnik
