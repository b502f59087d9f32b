#include "app/platform/AutostartEntry.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

struct Preferences {
    const TemporaryFolder folder;
    const std::string name = "autostart/com.tarnik.node.desktop";
    const std::string path = folder.path() + "/" + name;

    AutostartEntry entry(const std::string& program = "/usr/bin/tarnik") const {
        return {{.preferences = folder.path()}, program};
    }
    std::string text() const { return folder.read(name); }
};

TEST(AutostartEntry, isWrittenOnce) {
    const Preferences preferences;
    const auto entry = preferences.entry("/opt/a b/50%/\"$\\");
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_TRUE(entry.write());
    EXPECT_TRUE(entry.isEnabled());
    for (const char* line : {R"(Exec="/opt/a b/50%%/\\"\\$\\\\" --at-login)", R"(TryExec=/opt/a b/50%/"$\\)"})
        EXPECT_TRUE(preferences.text().contains("\n" + std::string(line) + "\n")) << preferences.text();
    fs::remove(preferences.path);  // the user deletes it
    EXPECT_FALSE(entry.write());
    EXPECT_FALSE(entry.isEnabled());
}

TEST(AutostartEntry, keepsAnExistingEntry) {
    const std::pair<const char*, bool> cases[] = {
        {"[Desktop Entry]\nExec=tarnik\nHidden = true\n", false},
        {"[Desktop Entry]\nExec=tarnik\nX-GNOME-Autostart-enabled=false", false},
        {"", false},
        {"[Other]\nExec=tarnik\n", false},
        {"Exec=tarnik\n", false},
        {"# ours\n[Desktop Entry]\r\nExec=tarnik\r\nX-GNOME-Autostart-enabled=true\n[X]\nHidden=true", true},
    };
    for (const auto& [text, isEnabled] : cases) {
        const Preferences preferences;
        preferences.folder.write(preferences.name, text);
        EXPECT_EQ(preferences.entry().isEnabled(), isEnabled) << text;
        EXPECT_FALSE(preferences.entry().write()) << text;
        EXPECT_EQ(preferences.text(), text);
    }
    const Preferences masked;
    shell(masked.folder.path(), "mkdir autostart; ln -s /dev/null " + masked.name);
    EXPECT_FALSE(masked.entry().isEnabled() || masked.entry().write());
}

TEST(AutostartEntry, refusesAProgramThatExecCannotName) {
    for (const char* name : {"tarnik", "/a\nHidden=true"}) EXPECT_FALSE(Preferences().entry(name).write());
}

}  // namespace
}  // namespace tarnik
