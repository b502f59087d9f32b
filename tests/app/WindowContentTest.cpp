#include "app/model/WindowContent.h"

#include <algorithm>
#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "app/model/MenuContent.h"
#include "app/model/SampleScreens.h"
#include "app/model/TerminalTail.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;
using Key = WindowContent::Key;
using Intent = UserIntent::Kind;

WindowContent contentOf(const AppState& state) {
    return WindowContent::of(state, *Url::parse("https://tarnik.test"));
}

AppState sample(std::string_view name) {
    const auto screens = sampleScreens();
    const auto found = std::ranges::find(screens, name, &SampleScreen::name);
    return found == screens.end() ? ADD_FAILURE() << "no screen " << name, AppState{} : found->state;
}

// "Cancel esc", "Continue return off"
std::string summary(const WindowContent::Button& button) {
    constexpr const char* keys[] = {"", " return", " esc", " return esc"};
    return button.title + keys[static_cast<int>(button.key)] + (button.enabled ? "" : " off");
}

// Returns the parts that differ between the screens in drawing order, with the first words of each text.
std::string summary(const WindowContent& content) {
    std::string text = content.symbol ? std::string(content.symbol->name) + ": " : "";
    text += content.heading.substr(0, content.heading.find(' ', 8));
    for (const auto& paragraph : content.paragraphs) text += " / " + paragraph.substr(0, paragraph.find(' '));
    if (std::holds_alternative<WindowContent::Busy>(content.progress)) text += " (busy)";
    if (const auto* download = std::get_if<DownloadProgress>(&content.progress))
        text += " (" + download->text + ")";
    if (content.terminal) text += " (terminal)";
    if (content.linkField) text += " " + content.linkField->placeholder;
    if (content.linkField && !content.linkField->enabled) text += " off";
    if (content.message) text += " | " + content.message->substr(0, content.message->find(' '));
    for (const auto& button : content.buttons) text += " [" + summary(button) + "]";
    return text;
}

// After the node has stopped and before the connect command prints anything.
TEST(WindowContent, showsAPairingBeforeItsSessionExists) {
    auto state = sample("connected-checking");
    state.node = NodeStates::Pairing{};
    const auto content = contentOf(state);
    EXPECT_EQ(content.heading, contentOf(sample("pairing-reading")).heading);
    EXPECT_EQ(content.buttons.front().intent.kind, Intent::cancelPairing);
}

TEST(WindowContent, showsEachState) {
    const std::string good = "checkmark.circle.fill: This Mac";
    const std::string bad = "exclamationmark.triangle: ";
    const std::pair<const char*, std::string> cases[] = {
        {"getting-ready", "Getting ready… (busy)"},
        {"installing", "arrow.down.circle: Downloading (busy)"},
        {"installing-download", "arrow.down.circle: Downloading (18.1 MB of 40.1 MB)"},
        {"install-failed", bad + "tarnik couldn't / Couldn't / Quit"},
        {"install-failed-long", bad + "tarnik couldn't / What / Couldn't / Quit"},
        {"helper-missing", bad + "tarnik's / Quit"},
        {"home-error", bad + "tarnik can't / The / Quit"},
        {"connect", "Connect this / Open https://tarnik.test/c/… [Continue return]"},
        {"checking",
         "Connect this / Open (busy) https://tarnik.test/c/… off | Checking [Continue return off] "
         "[Cancel esc]"},
        {"pairing-reading", "Reading the (busy) [Cancel esc]"},
        {"pairing-confirm", " (terminal) [Connect return] [Cancel esc]"},
        {"pairing-connecting", "Connecting… (busy) (terminal) [Cancel esc]"},
        {"pairing-connected", "checkmark.circle.fill: Connected. [Done return esc]"},
        {"pairing-failed", bad + "That didn't (terminal) [Done return esc]"},
        {"connected", good},
        {"connected-checking", good + " (busy) | Checking [Cancel esc]"},
        {"connected-refused-link", good + " | That"},
        {"reconnecting", "arrow.triangle.2.circlepath: Reconnecting…"},
        {"replace-offer", "This Mac / The [Connect to the new account] [Keep the current one esc]"},
        {"stopping", "Stopping… (busy)"},
    };
    for (const auto& [name, expected] : cases) EXPECT_EQ(summary(contentOf(sample(name))), expected) << name;
}

TEST(WindowContent, showsTheFirstSectionThatApplies) {
    AppState state = sample("pairing-reading");
    state.stopping = state.joined = true;
    state.replaceOffer = JoinCode{.text = "code", .link = "link"};
    state.node = NodeStates::Running{};
    state.homeError = "no home";
    state.setup = Setups::Failed{"no install"};
    const auto expect = [&](Section section, const char* why) {
        EXPECT_EQ(contentOf(state).section, section) << why;
    };
    expect(Section::stopping, "everything at once");
    state.stopping = false;
    expect(Section::replaceOffer, "no longer stopping");
    state.replaceOffer.reset();
    expect(Section::pairing, "no offer");
    state.pairing.reset();
    expect(Section::connected, "no pairing");
    state.node = NodeStates::NotInstalled{};
    expect(Section::problem, "no node on its way");
    EXPECT_EQ(contentOf(state).paragraphs.front(), "no home");
    state.homeError.reset();
    EXPECT_EQ(contentOf(state).paragraphs.front(), "no install");
}

TEST(WindowContent, distinguishesConnectedAndWaitingMachines) {
    const tarnik::Setup ready = Setups::Ready{};
    struct Case {
        NodeState node;
        tarnik::Setup setup;
        Section joined, unjoined;
    };
    const Case cases[] = {
        {NodeStates::Running{}, ready, Section::connected, Section::link},
        {NodeStates::Restarting{}, ready, Section::reconnecting, Section::link},
        {NodeStates::Pairing{}, ready, Section::reconnecting, Section::link},
        {NodeStates::Stopped{}, ready, Section::reconnecting, Section::link},
        {NodeStates::WaitingForLink{}, ready, Section::link, Section::link},
        {NodeStates::Stopped{}, Setups::Installing{""}, Section::reconnecting, Section::installing},
        {NodeStates::Stopped{}, Setups::Installing{"line"}, Section::installing, Section::installing},
        {NodeStates::Stopped{}, Setups::Failed{"text"}, Section::problem, Section::problem},
        {NodeStates::NotInstalled{}, ready, Section::problem, Section::problem},
    };
    for (const auto& c : cases) {
        AppState state{.setup = c.setup, .node = c.node};
        EXPECT_EQ(contentOf(state).section, c.unjoined) << describe(c.node) << c.setup.index();
        state.joined = true;
        EXPECT_EQ(contentOf(state).section, c.joined) << describe(c.node) << c.setup.index();
    }
}

TEST(WindowContent, offersASwitchOnlyWhileItIsOff) {
    const auto row = [](const WindowContent::SwitchRow& shown) {
        std::string text = std::string(shown.symbol.name) + " " + shown.title + (shown.on ? " on" : "");
        if (shown.button) {
            EXPECT_EQ(shown.button->intent.kind, Intent::requestSwitch);
            text +=
                " [" + shown.button->title + " " + std::string(rawValue(shown.button->intent.which)) + "]";
        }
        return text + (shown.hint ? " hint" : "");
    };
    const std::string off[] = {"circle Accessibility [Turn On… accessibility]",
                               "circle Screen Recording [Turn On… screenRecording]"};
    const std::string on[] = {"checkmark.circle.fill Accessibility on",
                              "checkmark.circle.fill Screen Recording on"};
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"connect", off[0], off[1]},
        {"connected-one-switch", on[0], off[1]},
        {"connected", on[0], on[1]},
        {"connected-stale-switch", off[0] + " hint", off[1]},
        {"stopping", "circle Accessibility", "circle Screen Recording"},
    };
    for (const auto& [name, first, second] : cases) {
        const auto rows = contentOf(sample(name)).switches.rows;
        ASSERT_EQ(rows.size(), 2U);
        EXPECT_EQ(row(rows[0]), first) << name;
        EXPECT_EQ(row(rows[1]), second) << name;
    }
}

TEST(SampleScreens, showEverySection) {
    std::set<std::string_view> names;
    std::set<Section> sections;
    for (const auto& [name, state, alert] : sampleScreens()) {
        EXPECT_TRUE(names.insert(name).second) << name;
        sections.insert(contentOf(state).section);
        EXPECT_FALSE(contentOf(state).announcement.empty()) << name;
    }
    EXPECT_EQ(sections.size(), static_cast<std::size_t>(Section::link) + 1);
}

TEST(WindowContent, boundsAndCleansTextsFromOutside) {
    const std::string turned{'\xE2', '\x80', '\xAE'};  // changes the direction of writing
    const std::string bad = "\x1B[31m<b>" + turned + "txt\a\x01";
    const std::string hostile = bad + std::string(1'000'000, 'x') + bad + "\nend";
    const AppState failed{.setup = Setups::Failed{hostile}, .linkMessage = hostile};
    const AppState homeless{.homeError = hostile};
    const AppState installing{.setup = Setups::Installing{hostile}};
    AppState pairing = sample("pairing-confirm");
    pairing.pairing->text = hostile;
    for (const auto& state : {failed, homeless, installing, pairing}) {
        const auto content = contentOf(state);
        const std::string shown =
            summary(content) + content.announcement + (content.terminal ? content.terminal->text : "");
        EXPECT_LT(shown.size(), maxTerminalTailBytes + 1000);
        EXPECT_TRUE(std::ranges::all_of(shown, [](char c) { return c == '\n' || c < 0 || c >= ' '; }));
        EXPECT_EQ(shown.find(turned), std::string::npos);
    }
    EXPECT_EQ(contentOf(AppState{.setup = Setups::Installing{"\n\x01"}}).heading, "Getting ready…");
    EXPECT_TRUE(contentOf(pairing).terminal->text.ends_with("x[31m<b>txt\nend"));
}

TEST(TerminalTail, keepsLinesAndWholeCharacters) {
    EXPECT_EQ(terminalTail("\n  a\r\n\n\tb  c\n \n"), "\n  a\n\nb  c");
    std::string accents;
    for (std::size_t i = 0; i < maxTerminalTailBytes; ++i) accents += "é";
    EXPECT_EQ(terminalTail(accents + "!"), accents.substr(0, maxTerminalTailBytes - 2) + "!");
    EXPECT_LE(terminalTail(std::string(20'000, '\xFF')).size(), maxTerminalTailBytes);
}

TEST(DownloadProgress, showsTheReceivedAndTheTotalSize) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    struct Case {
        AppState::Download download;
        std::optional<int> permille;
        const char* text;
    };
    const Case cases[] = {
        {{18'149'999, 40'050'000}, 453, "18.1 MB of 40.1 MB"},
        {{950'000, std::nullopt}, std::nullopt, "1.0 MB"},
        {{5'000'000, 4'000'000}, std::nullopt, "5.0 MB"},
        {{5'000'000, 0}, std::nullopt, "5.0 MB"},
        {{-1, 2'000'000}, 0, "0.0 MB of 2.0 MB"},
        {{most, most}, 1000, "9223372036854.8 MB of 9223372036854.8 MB"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DownloadProgress::of(c.download), (DownloadProgress{c.permille, c.text})) << c.text;
}

TEST(WindowContent, announcesImportantChanges) {
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"connect", "expired-link", *sample("expired-link").linkMessage},
        {"pairing-confirm", "pairing-refused-link", *sample("pairing-refused-link").linkMessage},
        {"refused-link", "connected-refused-link", contentOf(sample("connected")).heading},
        {"pairing-reading", "pairing-confirm", contentOf(sample("pairing-confirm")).announcement},
        {"pairing-confirm", "pairing-long-text", ""},
        {"connected-one-switch", "connected", "Screen Recording is on"},
        {"reconnecting", "connected-one-switch",
         contentOf(sample("connected")).heading + " Accessibility is on"},
    };
    for (const auto& [before, now, news] : cases)
        EXPECT_EQ(contentOf(sample(now)).newsSince(contentOf(sample(before))), news) << before << now;
    AppState more = sample("installing-download");
    more.download->received += 1'000'000;
    EXPECT_EQ(contentOf(more).newsSince(contentOf(sample("installing-download"))), "");
}

TEST(MenuContent, offersUpdatesOnlyWithAnUpdater) {
    const auto titles = [](UpdateCheck updates) {
        std::string text;
        for (const auto& entry : MenuContent::with(updates).entries)
            text += entry.isSeparator() ? "| "
                                        : std::string(entry.title) + " " + std::string(entry.key) +
                                              std::to_string(static_cast<int>(*entry.action)) + " ";
        return text;
    };
    EXPECT_EQ(titles(UpdateCheck::unavailable), "Open tarnik 0 | Quit tarnik q2 ");
    EXPECT_EQ(titles(UpdateCheck::available), "Open tarnik 0 Check for Updates… 1 | Quit tarnik q2 ");
}

}  // namespace
}  // namespace tarnik
