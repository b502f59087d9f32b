#include "app/platform/AutostartEntry.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using enum LoginItemState;

// A GNOME session of Ubuntu whose folders are empty.
struct Session {
    const TemporaryFolder folder;
    const std::string name = "autostart/com.tarnik.node.desktop";
    const std::string path = folder.path() + "/" + name;

    AutostartEntry entry(const std::string& program = "/bin/sh") const {
        return {{.preferences = folder.path()},
                {{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
                 {"XDG_CONFIG_DIRS", "relative:" + folder.path() + "/first:" + folder.path() + "/second"},
                 {"PATH", "/bin"}},
                program};
    }
    std::string text() const { return folder.read(name); }
    LoginItemState choose(LoginItemChoice choice) const {
        EXPECT_TRUE(entry().choose(choice));
        return entry().state();
    }
};

TEST(AutostartEntry, isWrittenOnce) {
    const Session session;
    const auto program = session.folder.write("a b/50%/\"$\\", "");
    shell(session.folder.path(), "chmod 700 a*/*/*");
    const auto entry = session.entry(program);
    EXPECT_EQ(entry.state(), off);
    EXPECT_TRUE(entry.write());
    EXPECT_EQ(entry.state(), on);
    EXPECT_TRUE(session.text().contains(R"(/a b/50%%/\\"\\$\\\\" --at-login)")) << session.text();
    fs::remove(session.path);  // the user deletes it
    EXPECT_FALSE(entry.write());
    EXPECT_EQ(entry.state(), off);
    EXPECT_EQ(session.choose(LoginItemChoice::on), on);
}

// The launch leaves each of these entries alone. A choice changes only the lines that it has to.
TEST(AutostartEntry, keepsTheLinesOfTheUser) {
    const std::string start = "# mine\n[Desktop Entry]\nType=Application\nExec=x\n";
    struct Case {
        std::string rest;
        LoginItemState state;
        std::optional<std::string> turnedOn;  // the rest after "on"; std::nullopt if the entry is replaced
    };
    const Case cases[] = {
        {"Hidden = true\nName=x", off, "Name=x"},
        {"Hidden=true\r\nHidden=false\r\n", on, "Hidden=true\r\nHidden=false\r\n"},
        {"X-GNOME-Autostart-enabled=false", off, ""},
        {"X-GNOME-Autostart-enabled=true\n[X]\nHidden=true", on,
         "X-GNOME-Autostart-enabled=true\n[X]\nHidden=true"},
        {"OnlyShowIn=KDE;GNOME;", on, "OnlyShowIn=KDE;GNOME;"},
        {"OnlyShowIn=KDE;\nNotShowIn=XFCE\n", off, "NotShowIn=XFCE\n"},
        {"NotShowIn=MATE;ubuntu\nHidden=1\n", off, ""},
        {"TryExec=sh\n", on, "TryExec=sh\n"},
        {"TryExec=/no/such/program\n", off, std::nullopt},
        {"TryExec=bin/sh\n", off, std::nullopt},
        {"Type=Link\nHidden=true\n", off, std::nullopt},
        {"Exec=\n", off, std::nullopt},
    };
    for (const auto& c : cases) {
        const Session session;
        session.folder.write(session.name, start + c.rest);
        EXPECT_EQ(session.entry().state(), c.state) << c.rest;
        EXPECT_FALSE(session.entry().write()) << c.rest;
        EXPECT_EQ(session.text(), start + c.rest);
        EXPECT_EQ(session.choose(LoginItemChoice::on), on) << c.rest;
        EXPECT_EQ(session.text() == start + c.turnedOn.value_or(""), c.turnedOn.has_value())
            << session.text();
        EXPECT_EQ(session.choose(LoginItemChoice::off), off) << c.rest;
        EXPECT_TRUE(session.text().contains("[Desktop Entry]\nHidden=true\nType=")) << session.text();
    }
}

TEST(AutostartEntry, hidesAnEntryOfTheSystem) {
    const Session session;
    session.folder.write("first/" + session.name, "[Desktop Entry]\nType=Application\nExec=x\nHidden=true\n");
    session.folder.write("second/" + session.name, "[Desktop Entry]\nType=Application\nExec=x\n");
    EXPECT_EQ(session.entry().state(), off);
    EXPECT_FALSE(session.entry().write());
    fs::remove(session.folder.path() + "/first/" + session.name);
    EXPECT_EQ(session.entry().state(), on);
    EXPECT_EQ(session.choose(LoginItemChoice::off), off);
    EXPECT_EQ(session.text(), "[Desktop Entry]\nHidden=true\nType=Application\nExec=x\n");
    EXPECT_EQ(session.choose(LoginItemChoice::on), on);
}

TEST(AutostartEntry, replacesALinkOnlyByChoice) {
    const Session session;
    shell(session.folder.path(), "mkdir autostart; ln -s /dev/null " + session.name);
    EXPECT_EQ(session.entry().state(), off);
    EXPECT_FALSE(session.entry().write());
    EXPECT_EQ(session.choose(LoginItemChoice::on), on);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(session.path)));
}

TEST(AutostartEntry, refusesAProgramThatExecCannotName) {
    for (const char* name : {"tarnik", "/a\nHidden=true"}) {
        const Session session;
        EXPECT_FALSE(session.entry(name).write());
        EXPECT_FALSE(session.entry(name).choose(LoginItemChoice::on));
        EXPECT_FALSE(fs::exists(session.path));
    }
}

}  // namespace
}  // namespace tarnik
