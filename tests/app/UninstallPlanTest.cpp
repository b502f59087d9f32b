#include "app/uninstall/UninstallPlan.h"

#include <filesystem>
#include <set>

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/node/NodeHomeLock.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

// A user's folders, with everything that the program may leave behind.
struct Fixture {
    TemporaryFolder user;
    UninstallPlan::Places places{
        .homes = {{.path = user.path() + "/.tarnik/node", .isDefault = true}},
        .folders = {.applicationSupport = user.path() + "/data",
                    .logs = user.path() + "/state",
                    .preferences = user.path() + "/config"},
        .controlFolders = {user.path() + "/run/tarnik", user.path() + "/data/tarnik"}};

    explicit Fixture(const std::string& script = "") {
        shell(
            user.path(),
            "mkdir -p .tarnik/node/app/bin data/tarnik/cua/0123 state/tarnik config/tarnik config/autostart "
            "run/tarnik; cd .tarnik/node; touch .tarnik-node-home app/bin/tarnik-node; cd ../..; "
            "touch state/tarnik/tarnik.log state/tarnik/tarnik.log.1 state/tarnik/node.log "
            "run/tarnik/control.sock "
            "data/tarnik/owner-1-2 data/tarnik/relocation.log config/tarnik/defaults.json "
            "config/tarnik/autostart-entry-written config/autostart/com.tarnik.node.desktop; touch other; " +
                script);
    }
    // Returns the files, links and empty folders that are left.
    std::string rest() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(user.path())) {
            if (entry.is_symlink() || !entry.is_directory() || fs::is_empty(entry))
                found.insert(entry.path().lexically_relative(user.path()));
        }
        std::string text;
        for (const auto& path : found) text += path + " ";
        return text;
    }
};

TEST(UninstallPlan, removesOnlyWhatIsOurs) {
    const std::string folders = "config/autostart data ";
    const std::pair<const char*, std::string> cases[] = {
        {"", folders + "other run state "},
        {"touch state/tarnik/mine", folders + "other run state/tarnik/mine "},
        {"rm .tarnik/node/.tarnik-node-home",
         ".tarnik/node/app/bin/tarnik-node " + folders + "other run state "},
        {"mv .tarnik/node real; ln -s ../real .tarnik/node",
         ".tarnik/node " + folders + "other real/.tarnik-node-home real/app/bin/tarnik-node run state "},
        {"ln -sf ../.other state/tarnik/node.log", folders + "other run state/tarnik/node.log "},
        {"mv state/tarnik real; ln -s ../real state/tarnik",
         folders + "other real/node.log real/tarnik.log real/tarnik.log.1 run state/tarnik "},
        {"ln -sf /dev/null config/autostart/com.tarnik.node.desktop",
         "config/autostart/com.tarnik.node.desktop data other run state "},
        {"mkdir -p state/tarnik/node.log.1/mine data/tarnik/owner-mine",
         "config/autostart data/tarnik/owner-mine other run state/tarnik/node.log.1/mine "},
        {"touch .tarnik/cli", ".tarnik/cli " + folders + "other run state "},
    };
    for (const auto& [script, rest] : cases) {
        const Fixture f(script);
        const auto before = f.rest();
        const auto plan = UninstallPlan::make(f.places);
        EXPECT_EQ(f.rest(), before) << "a plan changes nothing";
        for (const auto& item : plan.items)
            if (const auto removed = item.remove(); !removed) ADD_FAILURE() << removed.error();
        EXPECT_EQ(f.rest(), rest) << script;
    }
}

TEST(UninstallPlan, keepsTheFilesOfAnotherHome) {
    Fixture f("echo " + std::to_string(::getppid()) + " console >data/tarnik/owner-1-2");
    f.places.otherHome = f.user.path() + "/other";
    const auto plan = UninstallPlan::make(f.places);
    EXPECT_EQ(plan.items.size(), 2U) << "the home and the empty folder around it";
    EXPECT_EQ(plan.kept.size(), 1U);
    EXPECT_TRUE(lockHomes(f.places, Seconds(0))) << "the program on the other home may go on";
}

TEST(UninstallPlan, leavesAHomeInUse) {
    const Fixture f;
    EXPECT_TRUE(lockHomes(f.places, Seconds(0)));
    const auto lock = NodeHomeLock::take(f.places.homes.front());
    EXPECT_FALSE(lockHomes(f.places, Seconds(0)));

    const Fixture other("echo " + std::to_string(::getppid()) + " console >data/tarnik/owner-1-2");
    EXPECT_FALSE(lockHomes(other.places, Seconds(0))) << "of a program on another home";
}

TEST(UninstallPlan, removesNothingWithAnObstacle) {
    Fixture f;
    EXPECT_FALSE(UninstallPlan::make(f.places).obstacle);
    const auto mount = fs::canonical(f.user.path()).string() + "/.tarnik/node/app/my files";
    f.places.mountPoints = [&] {
        std::string escaped = mount;
        escaped.replace(escaped.find(' '), 1, "\\040");
        return parseMountInfo("36 35 98:0 / " + escaped + " rw,noatime shared:1 - ext4 /dev/sda rw\n");
    };
    EXPECT_TRUE(UninstallPlan::make(f.places).obstacle.value_or("").contains(mount));
    EXPECT_NE(mountPoints().value_or(std::vector<std::string>()), std::vector<std::string>());

    const Fixture unreadable("chmod 300 .tarnik/node");
    EXPECT_EQ(UninstallPlan::make(unreadable.places).obstacle.has_value(), ::geteuid() != 0);
    EXPECT_EQ(UninstallPlan::make(unreadable.places).items.front().remove().has_value(), ::geteuid() == 0);
}

}  // namespace
}  // namespace tarnik
