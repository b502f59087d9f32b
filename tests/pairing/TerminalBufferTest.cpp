#include "core/pairing/TerminalBuffer.h"

#include <ctime>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

// The reference: the whole output is cut and cleaned again for each chunk.
struct WholeText {
    std::string raw;

    void append(std::string_view bytes) {
        raw += decodeLossy(bytes);
        if (raw.size() <= TerminalBuffer::maxTextBytes) return;
        LastCharacters last(TerminalBuffer::keptCharacters);
        last.append(raw);
        raw.erase(0, last.start());
    }
    std::string text() const { return TerminalText::clean(raw); }
};

TEST(TerminalBuffer, equalsTheCleanedWholeOutput) {
    const std::vector<std::string> words[] = {
        {"a", "\x1B", "[", "1;32m", "]", "0;t\\", "\a", "\\", "\r\n", "\xFF", "text "},
        {"\u00E9", "\x1B[", "\U0001F469\u200D\U0001F467", "\u0301", "\U0001F1E9", "m", "\xC3", "\r"},
        {std::string(700, 'a'), std::string(900, '\x1B'), "]\u00E9", "\a", std::string(4'000, '\x80')},
    };
    for (unsigned seed = 0; seed < 6; ++seed) {
        std::mt19937 random(seed);
        const auto& vocabulary = words[seed % std::size(words)];
        TerminalBuffer buffer;
        WholeText whole;
        std::string known;
        const bool manyWords = seed >= 3;  // these chunks are long, so a few of them pass the limit
        for (int chunk = 0; chunk < (manyWords ? 15 : 60); ++chunk) {
            std::string bytes;
            for (auto count = random() % (manyWords ? 20 : 4); count > 0; --count)
                bytes += vocabulary[random() % vocabulary.size()];
            const std::size_t unchanged = buffer.append(bytes);
            whole.append(bytes);
            ASSERT_EQ(buffer.text(), whole.text()) << seed << " " << chunk;
            ASSERT_TRUE(known.ends_with(buffer.text().substr(0, unchanged)));
            known = buffer.text();
        }
    }
}

TEST(TerminalBuffer, keepsTheLastCharactersOfLongOutput) {
    std::string lines;
    while (lines.size() < 20'000) lines += std::to_string(lines.size()) + "\n";
    TerminalBuffer buffer;
    buffer.append(lines.substr(0, 16'384));
    EXPECT_EQ(buffer.text().size(), 16'384U);
    buffer.append(lines.substr(16'384));
    EXPECT_EQ(buffer.text(), lines.substr(lines.size() - 8192));
    EXPECT_EQ(buffer.textStart(), lines.size() - 8192);
}

TEST(TerminalBuffer, showsAnOverwrittenLineOnce) {
    const std::pair<const char*, const char*> cases[] = {
        {"a\r\nb\r\r\nc\r", "a\nb\nc"},    {"first\n10%\r20%\r\x1B[K30%\r\ndone", "first\n30%\ndone"},
        {"\rshort\rlonger\n", "longer\n"}, {"x\x1B]0;a\rb\ay\x1B\rz\x1B[1\rm!", "xyz!"},
        {"\u00E9\r\u00E8", "\u00E8"},
    };
    for (const auto& [printed, shown] : cases) {
        TerminalBuffer whole, single;
        whole.append(printed);
        EXPECT_EQ(whole.displayText(), shown);
        for (const char* rest = printed; *rest != '\0';) {
            const std::size_t length = *rest == '\xC3' ? 2 : 1;
            single.append({rest, length});
            rest += length;
        }
        EXPECT_EQ(single.displayText(), shown);
    }
    TerminalBuffer endless;
    for (int i = 0; i < 30'000; ++i) endless.append(i % 9 == 0 ? "\u00E9" : "a\rb");
    EXPECT_TRUE(endless.displayText().ends_with("b"));
    for (int i = 0; i < 30'000; ++i) endless.append("\u00E9");
    EXPECT_LE(endless.displayText().size(), TerminalDisplay::maxTextBytes);
    EXPECT_TRUE(isUtf8(endless.displayText()));
    endless.append("\rlast");
    EXPECT_EQ(endless.displayText(), "last");
}

TEST(TerminalBuffer, isBoundedForAnEndlessCharacter) {
    TerminalBuffer buffer;
    std::string marks;
    while (marks.size() < 4096) marks += "\u0301";
    for (std::size_t printed = 0; printed < TerminalBuffer::maxKeptBytes + 80'000; printed += marks.size()) {
        buffer.append(marks);
        ASSERT_LE(buffer.text().size(), TerminalBuffer::maxKeptBytes);
        ASSERT_GE(buffer.text().size(), std::min(printed, TerminalBuffer::maxKeptBytes / 2 - 4));
        ASSERT_EQ(buffer.textStart() + buffer.text().size(), printed + marks.size());
    }
    buffer.append("end");
    EXPECT_TRUE(buffer.text().ends_with("\u0301end"));
}

// Compares with cleaning everything for each byte, in processor time, since a loaded machine slows both.
TEST(TerminalBuffer, appendsInTimeLinearInTheNewBytes) {
    const std::string start(16'000, 'a');
    TerminalBuffer buffer;
    buffer.append(start);
    const std::clock_t before = std::clock();
    for (int i = 0; i < 300; ++i) buffer.append("b");
    const std::clock_t between = std::clock();
    for (int i = 0; i < 300; ++i) ASSERT_GT(TerminalText::clean(start + buffer.text()).size(), start.size());
    EXPECT_LT(between - before, (std::clock() - between) / 2);
}

}  // namespace
}  // namespace tarnik
