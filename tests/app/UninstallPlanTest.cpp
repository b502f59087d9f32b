#include "app/uninstall/UninstallPlan.h"

#include <filesystem>
#include <set>

#include <gtest/gtest.h>

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

TEST(UninstallPlan, leavesAHomeInUse) {
    const Fixture f;
    const auto lock = NodeHomeLock::take(f.places.homes.front());
    const auto plan = UninstallPlan::make(f.places);
    EXPECT_FALSE(plan.items.front().remove());
    EXPECT_TRUE(f.rest().contains(".tarnik/node/app/bin/tarnik-node"));
}

}  // namespace
}  // namespace tarnik
