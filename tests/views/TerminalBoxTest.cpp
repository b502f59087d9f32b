#include "app/views/TerminalBox.h"

#include <QApplication>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

std::string lines(int first, int last) {
    std::string text;
    for (int line = first; line <= last; ++line)
        text += "line " + std::to_string(line) + " of what a helper says while it reads a link\n";
    return text;
}

struct Fixture {
    TerminalBox box;

    Fixture() {
        box.resize(400, 120);
        box.show();
    }
    void say(const std::string& text) {
        box.setTerminal({.text = text, .accessibleName = "terminal"});
        QApplication::processEvents();
    }
    bool atEnd() const { return box.verticalScrollBar()->value() == box.verticalScrollBar()->maximum(); }
    QString selected() const { return box.textCursor().selectedText(); }
};

TEST(TerminalBox, scrollsToItsEndUnlessTheUserScrolledUp) {
    Fixture f;
    for (const int last : {40, 60}) {
        f.say(lines(1, last));
        EXPECT_TRUE(f.atEnd());
    }
    auto* bar = f.box.verticalScrollBar();
    bar->setValue(5);
    f.say(lines(1, 80));
    EXPECT_EQ(bar->value(), 5);
    bar->setValue(bar->maximum());
    f.say(lines(1, 100));
    EXPECT_TRUE(f.atEnd()) << bar->value() << " of " << bar->maximum();
    bar->setValue(0);
    f.box.reset();
    f.say(lines(1, 50));
    EXPECT_TRUE(f.atEnd()) << "a new program's text";
}

TEST(TerminalBox, showsItsBeginningIfItShould) {
    Fixture f;
    f.say(lines(1, 40));
    f.box.setTerminal({.text = lines(1, 50),
                       .accessibleName = "terminal",
                       .shows = WindowContent::Terminal::Shows::beginning});
    f.box.resize(200, 120);
    QApplication::processEvents();
    EXPECT_EQ(f.box.verticalScrollBar()->value(), 0);
    f.say(lines(1, 50));
    EXPECT_TRUE(f.atEnd());
}

TEST(TerminalBox, addsALongTextInSlices) {
    Fixture f;
    const auto text = lines(1, 3000);
    f.box.setLongText(text);
    EXPECT_LT(f.box.toPlainText().size(), 60'000);
    while (f.box.document()->blockCount() <= 3000) QApplication::processEvents();
    EXPECT_EQ(f.box.toPlainText().toStdString(), text);
    EXPECT_EQ(f.box.verticalScrollBar()->value(), 0);
}

TEST(TerminalBox, keepsASelectionThroughChangesElsewhere) {
    const std::tuple<const char*, std::string, QString> cases[] = {
        {"appended text", lines(1, 30), "line 12"},
        {"an overwritten last line", lines(1, 19) + "100 %\n", "line 12"},
        {"a dropped beginning", lines(8, 25), "line 12"},
        {"a dropped selection", lines(14, 25), ""},
    };
    for (const auto& [why, after, selected] : cases) {
        Fixture f;
        f.say(lines(1, 20));
        ASSERT_TRUE(f.box.find("line 12"));
        f.say(after);
        EXPECT_EQ(f.selected(), selected) << why;
        EXPECT_EQ(f.box.toPlainText().toStdString() + "\n", after) << why;
    }
}

TEST(TerminalBox, doesNotExtendASelectionAtItsEnd) {
    Fixture f;
    f.say("first");
    f.box.selectAll();
    f.say("first and more");
    EXPECT_EQ(f.selected(), "first");
}

}  // namespace
}  // namespace tarnik
