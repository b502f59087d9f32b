#include "app/policy/Policy.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/model/WindowContent.h"
#include "app/policy/ManagedSettings.h"
#include "app/policy/PolicyKeys.h"
#include "app/policy/PolicyReading.h"
#include "app/texts/LinkTexts.h"
#include "core/foundation/TarnikIdentity.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

using PolicyParser::Releases;

const std::string key(43, 'A');

std::string contents(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path).rdbuf();
    return bytes.str();
}

// Returns the settings of a policy, or the reason why it is refused.
std::string read(std::string_view text, Releases releases = Releases::bySettings) {
    const auto policy = PolicyParser::parse(text, releases);
    return policy ? textOf(policy->entries()) : policy.error().reason;
}

std::string forced(const std::string& member) {
    return R"({"forced": {)" + member + "}}";
}

TEST(Policy, isReadWholeOrRefusedWhole) {
    const std::pair<std::string, std::string> cases[] = {
        {"{}", ""},
        {R"({"forced": {"allowPairing": false}, "defaults": {"startAtLogin": true}})",
         "startAtLogin = true (default), allowPairing = false (forced)"},
        {"", "isn't JSON, is larger than 64 KiB, or names a key twice"},
        {forced(R"("hideSwitches": true, "hideSwitches": true)"),
         "isn't JSON, is larger than 64 KiB, or names a key twice"},
        {std::string(70'000, ' ') + "{}", "isn't JSON, is larger than 64 KiB, or names a key twice"},
        {"[]", R"(isn't an object with the members "forced" and "defaults")"},
        {R"({"allowPairing": false})",
         R"(has the unknown member "allowPairing"; only "forced" and "defaults" exist)"},
        {R"({"forced": true})", R"(has a member "forced" that isn't an object)"},
        {forced(R"("allowPairing": false, "allowparing": false)"), R"(has the unknown key "allowparing")"},
        {R"({"forced": {"hideSwitches": true}, "defaults": {"hideSwitches": true}})",
         R"(has the key "hideSwitches" both as forced and as default)"},
        {forced(R"("allowPairing": "false")"),
         R"(has a wrong value for the key "allowPairing"; it must be true or false)"},
    };
    for (const auto& [text, result] : cases) EXPECT_EQ(read(text), result) << text.substr(0, 60);
    EXPECT_EQ(read(forced(R"("releaseKey": ")" + key + '"'), Releases::fixed),
              R"(has the key "releaseKey", which this build doesn't accept)");
}

TEST(Policy, acceptsOnlyValidValues) {
    const std::tuple<const char*, std::vector<std::string>, std::vector<std::string>> cases[] = {
        {"releaseBase",
         {R"("https://h/a/")", R"("http://127.0.0.1:8/")"},
         {R"("http://h/")", R"("https://u@h/")", R"("https://h/?a")", R"("file:///a")", "1"}},
        {"releaseKey", {'"' + key + '"'}, {R"("AAAA")", "null"}},
        {"minimumHelper", {R"("2026.3.1")", R"("2026.3.1-2")"}, {R"("2026")", "2026"}},
        {"updates",
         {R"("always")", R"("never")", R"("22-6")", R"("0-23")"},
         {R"("24-6")", R"("6-6")", R"("-1-6")", R"("22-")", R"("022-6")", R"("off")", "false"}},
        {"proxy",
         {R"("direct")", R"("proxy.example:3128")", R"("socks5://127.0.0.1:1")"},
         {R"("http://u:p@h:1")", R"("ftp://h:1")", R"("")", "true"}},
        {"helperLogBytes", {"65536", "1073741824"}, {"65535", "1073741825", "1e300", R"("65536")"}},
        {"programLogBytes", {"65536.0"}, {"-1", "70000.5"}},
    };
    for (const auto& [name, good, bad] : cases) {
        const auto with = [&](const std::string& value) {
            return read(forced('"' + std::string(name) + "\": " + value));
        };
        for (const auto& value : good) EXPECT_TRUE(with(value).ends_with("(forced)")) << with(value);
        for (const auto& value : bad) EXPECT_TRUE(with(value).starts_with("has a wrong value")) << value;
    }
    for (int hour = 0; hour < 24; ++hour) {
        EXPECT_EQ(UpdateRule::parse("22-6")->allowsHour(hour), hour >= 22 || hour < 6) << hour;
        EXPECT_EQ(UpdateRule::parse("9-17")->allowsHour(hour), hour >= 9 && hour < 17) << hour;
    }
}

// Both samples have the same settings: all keys that every build accepts.
TEST(Policy, readsTheSamples) {
    const auto file = contents(TARNIK_SOURCE_DIR "/packaging/linux/policy.json");
    const auto policy = PolicyParser::parse(file, Releases::fixed);
    ASSERT_TRUE(policy) << policy.error().reason;
    EXPECT_EQ(policy->entries().size(), std::tuple_size_v<decltype(PolicyKeys::all)> - 2);

    const auto profile =
        PropertyList::parse(contents(TARNIK_SOURCE_DIR "/packaging/macos/tarnik.mobileconfig"));
    ASSERT_TRUE(profile);
    const auto& payload = profile->entry("PayloadContent")->elements().at(0);
    EXPECT_EQ(payload.entry("PayloadType")->asString(), TarnikIdentity::bundleIdentifier);
    const auto managed = PolicyParser::parse(*payload.entry("Policy"), Releases::fixed);
    ASSERT_TRUE(managed) << managed.error().reason;
    EXPECT_EQ(*managed, *policy);
}

// A folder of policy files. Its owner is the user of the tests.
struct Files : TemporaryFolder {
    Files() { write("policy.json", forced(R"("allowPairing": false, "hideSwitches": true)"), 0644); }
    void write(const std::string& name, const std::string& text, mode_t mode) const {
        ::chmod(TemporaryFolder::write(name, text).c_str(), mode);
        ::chmod((path() + "/policy.d").c_str(), 0755);
    }
    // Returns the settings, or the warnings without the folder's name.
    std::string result(uid_t owner = ::geteuid()) const {
        const auto reading = PolicyFolder{.base = path(), .owner = owner}.read(Releases::fixed);
        auto text = reading.warnings();
        while (text.contains(path())) text.replace(text.find(path()), path().size(), "DIR");
        const auto settings = textOf(reading.policy.entries());
        return settings + (settings.empty() || text.empty() ? "" : " | ") + text;
    }
};

TEST(PolicyFolder, mergesTrustedFilesInTheOrderOfTheirNames) {
    const std::string first = "hideSwitches = true (forced), allowPairing = false (forced)";
    Files f;
    EXPECT_EQ(f.result(), first);
    f.write("policy.d/20.json", R"({"forced": {"hideSwitches": false}})", 0644);
    f.write("policy.d/10.json", R"({"forced": {"hideSwitches": true}, "defaults": {"allowPairing": true}})",
            0644);
    f.write("policy.d/.30.json", "{", 0644);
    f.write("policy.d/30.json.bak", "{", 0644);
    EXPECT_EQ(f.result(), "hideSwitches = false (forced), allowPairing = false (forced)");
    f.write("policy.d/40.json", R"({"forced": {"hideswitches": false}})", 0644);
    EXPECT_EQ(
        f.result(),
        "The settings of your organisation aren't used, because DIR/policy.d/40.json has the unknown key "
        "\"hideswitches\". tarnik uses its own settings.");
}

TEST(PolicyFolder, ignoresWhatOthersCanChange) {
    const std::string first = "hideSwitches = true (forced), allowPairing = false (forced)";
    Files f;
    const auto second = R"({"forced": {"hideSwitches": false}})";
    f.write("policy.d/10.json", second, 0664);
    EXPECT_EQ(f.result(),
              first + " | DIR/policy.d/10.json is ignored, because it can be changed by other users.");
    std::filesystem::remove(f.path() + "/policy.d/10.json");
    std::filesystem::create_symlink(f.path() + "/policy.json", f.path() + "/policy.d/10.json");
    ::mkfifo((f.path() + "/policy.d/20.json").c_str(), 0644);
    const std::string kind = " is ignored, because it is a link or not a regular file.";
    EXPECT_EQ(f.result(), first + " | DIR/policy.d/10.json" + kind + " DIR/policy.d/20.json" + kind);
    ::chmod((f.path() + "/policy.d").c_str(), 0777);
    EXPECT_EQ(f.result(), first + " | DIR/policy.d is ignored, because it can be changed by other users.");
    EXPECT_EQ(f.result(::geteuid() + 1),
              "DIR is ignored, because it doesn't belong to user " + std::to_string(::geteuid() + 1) + ".");
    ::chmod(f.path().c_str(), 0770);
    EXPECT_EQ(f.result(), "DIR is ignored, because it can be changed by other users.");
    ::chmod(f.path().c_str(), 0700);
    std::filesystem::remove_all(f.path() + "/policy.d");
    std::filesystem::remove(f.path() + "/policy.json");
    EXPECT_EQ(f.result(), "");
}

TEST(ManagedSettings, neverWeakenTheBuild) {
    const std::tuple<std::optional<std::string>, std::string, std::string> cases[] = {
        // the build's minimum, the policy's, and the one that applies
        {std::nullopt, "2026.3.1", "2026.3.1"},
        {"2026.3.1", "2026.4.0", "2026.4.0"},
        {"2026.3.1", "2026.3.0", "2026.3.1"},
        {"broken", "2026.3.0", "broken"},
    };
    for (const auto& [build, policy, result] : cases)
        EXPECT_EQ(managedSettings({.nodeMinVersion = build}, {.minimumHelper = {{policy}}}).nodeMinVersion,
                  result);
}

TEST(ManagedProxies, areTheFirstOrTheLastSource) {
    const ProxyRoute ours{"http://ours:1"}, theirs{"http://theirs:1"};
    const std::tuple<Policy, bool, ProxyRoutes> cases[] = {
        // the policy, whether the person has set a proxy, and the routes
        {{}, false, {ProxyRoute()}},
        {{.proxy = {{ours}}}, true, {ours}},
        {{.proxy = {{ours, PolicyStrength::byDefault}}}, true, {theirs}},
        {{.proxy = {{ours, PolicyStrength::byDefault}}}, false, {ours}},
        {{.proxy = {{ProxyRoute()}}}, true, {ProxyRoute()}},
    };
    for (const auto& [policy, hasOwn, routes] : cases) {
        ProxySources person;
        if (hasOwn) person.environment = {{"https_proxy", theirs.address}};
        EXPECT_EQ(managedProxies(person, policy).routesFor("https://h/"), routes);
    }
}

TEST(ManagedPairing, isRefusedBeforeAnythingStarts) {
    const std::tuple<Policy, bool, std::string_view> cases[] = {
        // the policy, whether the machine has joined, and the message
        {{}, false, LinkTexts::checkingLink},
        {{.allowPairing = {{false}}}, false, LinkTexts::pairingNotAllowed},
        {{.allowPairing = {{false}}}, true, LinkTexts::pairingNotAllowed},
        {{.allowReplacing = {{false}}}, false, LinkTexts::checkingLink},
        {{.allowReplacing = {{false}}}, true, LinkTexts::replacingNotAllowed},
    };
    for (const auto& [policy, joined, message] : cases) {
        FakeMachine f;
        f.policy = policy;
        f.install();
        if (joined) f.join();
        f.model().start();
        f.settle();
        const auto expects = [&](const char* why) {
            EXPECT_EQ(f.state().linkMessage, message) << why;
            EXPECT_FALSE(f.state().replaceOffer) << why;
            EXPECT_EQ(f.model().pairing().isInProgress(), message == LinkTexts::checkingLink) << why;
            f.model().pairing().cancel();
        };
        f.model().pairing().connect(FakeMachine::link());
        expects("pasted");
        f.replaceBy('a');
        expects("answer to an offer");
        EXPECT_EQ(f.terminals.count(), 0U);
    }
}

// The parts of the window that a policy changes, as words.
std::string windowOf(const Policy& policy) {
    FakeMachine f;
    f.policy = policy;
    f.install();
    f.deps.platform.loginItem.state = [] { return LoginItemState::on; };
    f.model().start();
    f.model().loginItem().refresh();
    f.settle();
    const auto content = WindowContent::of(f.state(), {.webOrigin = f.model().webOrigin()});
    std::string words;
    if (!content.linkField->enabled || !content.buttons.front().enabled ||
        content.linkField->paste == std::nullopt)
        words += "field ";
    if (content.message) words += "message ";
    if (!content.startAtLogin->enabled) words += "login ";
    if (content.switches == WindowParts::Switches()) words += "switches ";
    return words;
}

TEST(ManagedWindow, locksExactlyWhatThePolicySets) {
    const PolicySetting<bool> fixed{.value = false};
    const PolicySetting<bool> free{.value = false, .strength = PolicyStrength::byDefault};
    EXPECT_EQ(windowOf({}), "");
    EXPECT_EQ(windowOf({.startAtLogin = fixed}), "login ");
    EXPECT_EQ(windowOf({.startAtLogin = free}), "");
    EXPECT_EQ(windowOf({.hideSwitches = {{true}}}), "switches ");
    EXPECT_EQ(windowOf({.hideSwitches = fixed}), "");
    EXPECT_EQ(windowOf({.allowPairing = fixed}), "field message ");
    EXPECT_EQ(windowOf({.updates = {{{.kind = UpdateRule::Kind::never}}}, .allowReplacing = fixed}), "");
}

}  // namespace
}  // namespace tarnik
