#include "core/foundation/PropertyList.h"

#include <gtest/gtest.h>

#include "tests/support/PropertyLists.h"

namespace tarnik {
namespace {

using namespace propertyLists;

// Returns the value, or a dictionary's entry "a", as text: "none" if there is no list, "other" for other
// types.
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

// Each array contains the next one `width` times.
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

TEST(PropertyList, parsesOneCompleteXmlList) {
    const std::string list = xml("<dict><key>a</key><string>x &lt;</string></dict>");
    const auto entry = [](const std::string& value) { return xml("<dict><key>a</key>" + value + "</dict>"); };
    const Case cases[] = {
        {"a byte-order mark and white space", "\uFEFF \n" + list, "x <"},
        {"comments", "<!-- > --><plist a=\"/>\"><!----> <string b='c'>x</string></plist ><!-- -->", "x"},
        {"an array", xml("<array><string>x</string><integer>1</integer><string/></array>"), "x,other,,"},
        {"references and a section", entry("<string>&#x20AC;&#65;<![CDATA[<&]]>!</string>"), "\u20ACA<&!"},
        {"a key twice", xml("<dict><key>a</key><string/><key>a</key><string>2</string></dict>"), "2"},
        {"the most containers", nestedXml(PropertyList::maxContainers, "<array>", "</array>"), "other,"},
        {"one more", nestedXml(PropertyList::maxContainers + 1, "<array>", "</array>")},
        {"too large", list + std::string(PropertyList::maxBytes, ' ')},
        {"no end tag", list.substr(0, list.rfind("</plist>"))},
        {"a wrong end tag", xml("<dict></array>")},
        {"a second value", xml("<dict/><dict/>")},
        {"a text behind the end", list + "x"},
        {"a text between entries", xml("<dict>x</dict>")},
        {"a key without a value", entry("")},
        {"a value without a key", xml("<dict><string>x</string></dict>")},
        {"an incomplete tag", "<plist><dict/></plist"},
        {"a section without an end", entry("<string><![CDATA[x</string>")},
        {"an element within a text", entry("<string><true/></string>")},
        {"an unknown reference", entry("<string>&x;</string>")},
        {"a reference to a control character", entry("<string>&#1;</string>")},
        {"a control character", entry("<string>\x01</string>")},
        {"invalid UTF-8", entry("<string>\xFF</string>")},
        {"entity definitions", "<!DOCTYPE plist [<!ENTITY a 'x'>]><plist><string>x</string></plist>"},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

TEST(PropertyList, parsesTheOldTextFormat) {
    const std::string deepest =
        std::string(PropertyList::maxContainers, '(') + std::string(PropertyList::maxContainers, ')');
    const Case cases[] = {
        {"unquoted strings", "// first\n{ /* then */ b = c; a = x/y.z-1; }\n", "x/y.z-1"},
        {"quotes", R"({ "a" = 'it\'s "\U20ac\101\n"'; })", "it's \"\u20ACA\n\""},
        {"kinds of values", "{ a = (x, <0F a3>, {}, (),); }", "x,other,other,other,"},
        {"the most containers", deepest, "other,"},
        {"one more", "(" + deepest + ")"},
        {"no semicolon", "{ a = x }"},
        {"no value", "{ a; }"},
        {"no comma", "{ a = (x y); }"},
        {"a text without an end", "{ a = \"x; }"},
        {"a comment without an end", "{ a = x; } /*"},
        {"an unknown escape", R"({ a = "\x"; })"},
        {"half a character", R"({ a = "\Ud83d"; })"},
        {"text behind the end", "{ a = x; } y"},
        {"JSON", R"({"a":"x"})"},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

TEST(PropertyList, parsesBinaryListsWithinTheLimits) {
    const std::string good = binaryEntry(binaryText("a"));
    const std::string utf16 = binaryObject(6, 2, std::string("\0x\x20\xAC", 4));
    const std::string large = binaryText(std::string(20'000, 'x'));
    // Replaces the byte at this distance from the end.
    const auto spoilt = [&](std::size_t fromEnd) {
        return std::string(good).replace(good.size() - fromEnd, 1, "\x7F");
    };
    const Case cases[] = {
        {"a dictionary", good, "x\u00E9"},
        {"kinds", binary({binaryArray({1, 2, 3}), utf16, "\x09", "\x10\x01"}), "x\u20AC,other,other,"},
        {"a short count", binary({"\x51x"}), "x"},
        {"the most containers", nestedBinary(PropertyList::maxContainers, 1), "other,"},
        {"one more", nestedBinary(PropertyList::maxContainers + 1, 1)},
        {"small, but exponential when expanded", nestedBinary(40, 2)},
        {"one large string, many times", binary({binaryArray(std::vector<std::size_t>(1000, 1)), large})},
        {"an array that contains itself", binary({binaryArray({0})})},
        {"a reference to nothing", binary({binaryArray({1})})},
        {"two halves of a character", binary({binaryObject(6, 2, "\xD8\x3D\xDE\x0A")}), "\U0001F60A"},
        {"one half", binary({binaryArray({1}), binaryObject(6, 1, "\xD8\x3D")}), "other,"},
        {"a key that is no string", binaryEntry(binaryArray({}))},
        {"an object beyond the end", binary({binaryObject(5, 60'000, "x")})},
        {"a count that is no number", binary({"\x5F\x51\x01x"})},
        {"a set", binary({binaryObject(12, 0, "")})},
        {"a table beyond the end", spoilt(1)},
        {"more objects than bytes", spoilt(24)},
        {"another version", "bplist15" + good.substr(8)},
    };
    for (const auto& c : cases) EXPECT_EQ(summary(c.bytes), c.summary) << c.why;
}

}  // namespace
}  // namespace tarnik
