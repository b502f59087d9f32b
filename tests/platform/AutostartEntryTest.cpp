#include "app/platform/linux/AutostartEntry.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

struct Preferences {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/autostart/com.tarnik.node.desktop";

    AutostartEntry entry(const std::string& program = "/usr/bin/tarnik") const {
        return {{.preferences = folder.path()}, program};
    }
    void write(const std::string& text) const {
        fs::create_directories(folder.path() + "/autostart");
        std::ofstream(path) << text;
    }
    std::string read() const {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
};

TEST(AutostartEntry, isWrittenOnce) {
    const Preferences preferences;
    const auto entry = preferences.entry("/opt/a b/50%/\"$\\");
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_TRUE(entry.write());
    EXPECT_TRUE(entry.isEnabled());
    for (const char* line : {R"(Exec="/opt/a b/50%%/\\"\\$\\\\" --at-login)", R"(TryExec=/opt/a b/50%/"$\\)"})
        EXPECT_NE(preferences.read().find("\n" + std::string(line) + "\n"), std::string::npos)
            << preferences.read();
    fs::remove(preferences.path);  // by the person
    EXPECT_FALSE(entry.write());
    EXPECT_FALSE(entry.isEnabled());
}

TEST(AutostartEntry, leavesThePersonsDecisionAlone) {
    struct Case {
        const char* text;
        bool isEnabled;
    };
    const Case cases[] = {
        {"[Desktop Entry]\nExec=tarnik\nHidden = true\n", false},
        {"[Desktop Entry]\nExec=tarnik\nX-GNOME-Autostart-enabled=false", false},
        {"", false},
        {"[Other]\nExec=tarnik\n", false},
        {"# ours\n[Desktop Entry]\r\nExec=tarnik\r\nX-GNOME-Autostart-enabled=true\n[X]\nHidden=true", true},
    };
    for (const auto& c : cases) {
        const Preferences preferences;
        preferences.write(c.text);
        EXPECT_EQ(preferences.entry().isEnabled(), c.isEnabled) << c.text;
        EXPECT_FALSE(preferences.entry().write()) << c.text;
        EXPECT_EQ(preferences.read(), c.text);
    }
    const Preferences masked;
    fs::create_directories(masked.folder.path() + "/autostart");
    fs::create_symlink("/dev/null", masked.path);
    EXPECT_FALSE(masked.entry().isEnabled());
    EXPECT_FALSE(masked.entry().write());
}

TEST(AutostartEntry, wantsAFullPath) {
    const Preferences preferences;
    for (const char* program : {"tarnik", "/a\nHidden=true"})
        EXPECT_FALSE(preferences.entry(program).write());
    EXPECT_FALSE(fs::exists(preferences.path));
}

}  // namespace
}  // namespace tarnik
