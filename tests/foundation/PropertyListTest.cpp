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

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) all += text;
    return all;
}

std::string nestedXml(std::size_t depth) {
    return xml(repeated("<array>", depth) + repeated("</array>", depth));
}

// Each array holds the next one `width` times.
std::string nestedBinary(std::size_t depth, std::size_t width) {
    std::vector<std::string> objects;
    for (std::size_t i = 1; i < depth; ++i) objects.push_back(binaryArray(std::vector(width, i)));
    objects.push_back(binaryArray({}));
    return binary(objects);
}

TEST(PropertyList, readsXmlAndNothingLikeIt) {
    const std::string list = xml("<dict><key>a</key><string>x &lt;</string></dict>");
    struct Case {
        const char* why;
        std::string bytes;
        std::string summary;
    };
    const Case cases[] = {
        {"a whole file", list, "x <"},
        {"a byte-order mark and blanks", "\xEF\xBB\xBF \n" + list, "x <"},
        {"without a prologue", "<plist><string>x</string></plist>", "x"},
        {"an array", xml("<array><string>x</string><integer>1</integer><true/><string/></array>"),
         "x,other,other,,"},
        {"a number", xml("<integer>1</integer>"), "other"},
        {"a missing entry", xml("<dict><key>aa</key><string>x</string></dict>"), "no a"},
        {"a key twice", xml("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"),
         "2"},
        {"a text that isn't UTF-8", xml("<string>\xFF</string>"), "other"},
        {"as many containers as may be", nestedXml(PropertyList::maxContainers), "other,"},
        {"one more", nestedXml(PropertyList::maxContainers + 1), "none"},
        {"nested very deep, closed in comments only", xml(repeated("<array><!--</array>-->", 2000)), "none"},
        {"too large", list + std::string(PropertyList::maxBytes, ' '), "none"},
        {"cut short", list.substr(0, list.size() - 20), "none"},
        {"a NUL", xml(std::string_view("<string>\0</string>", 18)), "none"},
        {"another document", "<?xml version=\"1.0\"?><html/>", "none"},
        {"the old text form", "{ a = x; }", "none"},
        {"JSON", R"({"a":"x"})", "none"},
        {"another encoding", std::string("\xFE\xFF\0<", 4), "none"},
        {"nothing", "", "none"},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

TEST(PropertyList, readsBinaryWithinItsBounds) {
    const std::string dictionary =
        binary({binaryDictionary({1, 2}), binaryText("a"), binaryText("x\xC3\xA9")});
    const std::string utf16 = binaryObject(6, 2, std::string("\0x\x20\xAC", 4));
    std::string wrongTable = dictionary;
    wrongTable[wrongTable.size() - 1] = '\x7F';
    std::string manyObjects = dictionary;
    manyObjects[manyObjects.size() - 24] = '\x7F';
    struct Case {
        const char* why;
        std::string bytes;
        std::string summary;
    };
    const Case cases[] = {
        {"a dictionary", dictionary, "x\xC3\xA9"},
        {"a key twice",
         binary({binaryDictionary({1, 1, 2, 3}), binaryText("a"), binaryText("1"), binaryText("2")}), "2"},
        {"kinds of values", binary({binaryArray({1, 2, 3, 2}), utf16, "\x09", std::string("\x10\x01")}),
         "x\xE2\x82\xAC,other,other,other,"},
        {"a short count", binary({"\x51x"}), "x"},
        {"as many containers as may be", nestedBinary(PropertyList::maxContainers, 1), "other,"},
        {"one more", nestedBinary(PropertyList::maxContainers + 1, 1), "none"},
        {"small, and endless once unfolded", nestedBinary(40, 2), "none"},
        {"one large text, many times",
         binary({binaryArray(std::vector<std::size_t>(1000, 1)), binaryText(std::string(20'000, 'x'))}),
         "none"},
        {"an array within itself", binary({binaryArray({0})}), "none"},
        {"a reference to nothing", binary({binaryArray({1})}), "none"},
        {"a key with a NUL",
         binary({binaryDictionary({1, 2}), binaryText(std::string("a\0b", 3)), binaryText("x")}), "none"},
        {"a wide key with a NUL",
         binary({binaryDictionary({1, 2}), binaryObject(6, 2, std::string("\0a\0\0", 4)), binaryText("x")}),
         "none"},
        {"a key that is no text", binary({binaryDictionary({0, 1}), binaryText("a")}), "none"},
        {"an object that runs over the end", binary({binaryObject(5, 60'000, "x")}), "none"},
        {"a count that is no number", binary({"\x5F\x51\x01x"}), "none"},
        {"a set", binary({binaryObject(12, 0, "")}), "none"},
        {"a table behind the end", wrongTable, "none"},
        {"more objects than bytes", manyObjects, "none"},
        {"cut short", dictionary.substr(0, dictionary.size() - 1), "none"},
        {"the beginning alone", "bplist00", "none"},
        {"another version", "bplist15" + dictionary.substr(8), "none"},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

}  // namespace
}  // namespace tarnik
