#include "app/model/WindowContent.h"

#include <algorithm>
#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "app/model/MenuContent.h"
#include "app/model/SampleScreens.h"
#include "app/model/TerminalTail.h"
#include "core/foundation/LocalDay.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;
using Intent = UserIntent::Kind;

WindowContent contentOf(const AppState& state) {
    return WindowContent::of(state, {.webOrigin = *Url::parse("https://tarnik.test"), .now = sampleTime()});
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

// Returns the parts that differ between the screens, without their texts.
std::string summary(const WindowContent& content) {
    std::string text = content.symbol ? std::string(content.symbol->name) : "";
    if (std::holds_alternative<WindowContent::Busy>(content.progress)) text += " (busy)";
    const auto* download = std::get_if<DownloadProgress>(&content.progress);
    if (download) text += " (" + download->text + ")";
    if (content.card) text += " (card)";
    if (content.trouble) text += " (trouble)";
    if (content.terminal) text += " (terminal)";
    if (const auto& field = content.linkField) {
        text += field->refused ? " refused" : field->enabled ? " link" : " link off";
        if (field->paste) text += " [" + summary(*field->paste) + "]";
    }
    constexpr const char* kinds[] = {" | ", " ! ", " > "};
    if (const auto& message = content.message)
        text += kinds[static_cast<int>(message->kind)] + message->text.substr(0, message->text.find(' '));
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
    const std::string good = "checkmark.circle.fill (card)", bad = "exclamationmark.triangle";
    const std::string arrows = "arrow.triangle.2.circlepath", laptop = "laptopcomputer";
    const std::string again = " [Try Again return] [Copy Details]";
    const std::pair<const char*, std::string> cases[] = {
        {"getting-ready", laptop + " (busy)"},
        {"installing", "arrow.down.circle (busy)"},
        {"installing-download", "arrow.down.circle (18.1 MB of 40.1 MB)"},
        {"install-failed", bad + again},
        {"helper-missing", bad + again},
        {"home-error", bad + " [Copy Details]"},
        {"connect", laptop + " link [Paste] [Continue return]"},
        {"checking", laptop + " (busy) link off | Checking [Continue return off] [Cancel esc]"},
        {"expired-link", laptop + " refused [Paste] ! This [Continue return]"},
        {"pairing-reading", laptop + " (busy) [Cancel esc]"},
        {"pairing-confirm", laptop + " (terminal) [Connect return] [Cancel esc]"},
        {"pairing-connecting", laptop + " (busy) (terminal) [Cancel esc]"},
        {"pairing-connected", good + " > Two [Done return esc]"},
        {"pairing-failed", bad + " (terminal) [Done return esc]"},
        {"connected", good + " | You"},
        {"connected-one-switch", good + " > One"},
        {"connected-refused-link", good + " ! That"},
        {"connected-after-trouble", "checkmark.circle.fill (trouble) (terminal) [Copy Details] [Show Log]"},
        {"connected-checking", "checkmark.circle.fill (busy) (card) | Checking [Cancel esc]"},
        {"reconnecting-first", arrows + " (busy)"},
        {"reconnecting-trouble", arrows + " (trouble) (terminal) [Try Now return] [Copy Details] [Show Log]"},
        {"replace-offer", laptop + " [Keep the current one esc] [Connect to the new account]"},
        {"stopping", laptop + " (busy)"},
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
    EXPECT_EQ(contentOf(state).section, Section::stopping);
    state.stopping = false;
    EXPECT_EQ(contentOf(state).section, Section::replaceOffer);
    state.replaceOffer.reset();
    EXPECT_EQ(contentOf(state).section, Section::pairing);
    state.pairing.reset();
    EXPECT_EQ(contentOf(state).section, Section::connected);
    state.node = NodeStates::NotInstalled{};
    EXPECT_EQ(contentOf(state).section, Section::problem);
    EXPECT_EQ(contentOf(state).paragraphs.front(), "no home");
    state.homeError.reset();
    EXPECT_EQ(contentOf(state).paragraphs.front(), "no install");
}

TEST(WindowContent, distinguishesConnectedAndWaitingMachines) {
    const tarnik::Setup ready = Setups::Ready{};
    const std::tuple<NodeState, tarnik::Setup, Section, Section> cases[] = {
        // joined, and not
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
    for (const auto& [node, setup, joined, unjoined] : cases) {
        AppState state{.setup = setup, .node = node};
        EXPECT_EQ(contentOf(state).section, unjoined) << describe(node) << setup.index();
        state.joined = true;
        EXPECT_EQ(contentOf(state).section, joined) << describe(node) << setup.index();
    }
}

TEST(WindowContent, offersASwitchOnlyWhileItIsOff) {
    const std::pair<const char*, std::string> cases[] = {
        {"connect", "circle [accessibility] circle [screenRecording] "},
        {"connected-one-switch", "checkmark.circle.fill on circle [screenRecording] "},
        {"connected", "checkmark.circle.fill on checkmark.circle.fill on "},
        {"connected-stale-switch", "circle [accessibility] hint circle [screenRecording] "},
        {"stopping", "circle circle "},
    };
    for (const auto& [name, expected] : cases) {
        std::string text;
        for (const auto& row : contentOf(sample(name)).switches.rows) {
            text += std::string(row.symbol.name) + (row.on ? " on " : " ");
            if (row.button) text += "[" + std::string(rawValue(row.button->intent.which)) + "] ";
            if (row.hint) text += "hint ";
        }
        EXPECT_EQ(text, expected) << name;
    }
}

std::string cardOf(const AppState& state, Seconds later = Seconds(0)) {
    const auto now = sampleTime() + std::chrono::duration_cast<WallTime::duration>(later);
    std::string text;
    const auto card = *WindowContent::of(state, {.now = now}).card;
    for (const auto& row : card.rows) text += row.value + "|";
    return text;
}

TEST(WindowContent, showsFactsAboutAConnectedMachine) {
    const std::string running = "Running since 14:37, version 2026.1.1|";
    EXPECT_EQ(cardOf(sample("connected")), running + "Ready|Installed automatically|");
    EXPECT_EQ(cardOf(sample("connected-starting")), "Starting…|Starting…|Installed automatically|");
    EXPECT_EQ(cardOf(sample("connected-one-switch")), running + "Needs one more switch|");
    EXPECT_EQ(cardOf(sample("pairing-connected")), "Starting…|Needs two switches|");
    EXPECT_EQ(cardOf(sample("connected-switches-off"), std::chrono::hours(50)),
              "Running since 2026-01-15, version 2026.1.1|Needs two switches|");
    const auto untilMidnight = nextDay(sampleTime()) - sampleTime();
    EXPECT_EQ(cardOf(sample("connected-one-switch"), untilMidnight - Seconds(1)),
              running + "Needs one more switch|");
    EXPECT_EQ(cardOf(sample("connected-one-switch"), untilMidnight),
              "Running since 2026-01-15, version 2026.1.1|Needs one more switch|");
    auto state = sample("connected-update-waiting");
    state.helper.version.clear();
    state.switches.screenRecording = false;  // the driver stops a moment later
    EXPECT_EQ(cardOf(state), "Running since 14:37|Needs one more switch|2026.2 waits for a quiet moment|");
}

TEST(WindowContent, showsTheHelpersWordsWithoutTheKeys) {
    auto state = sample("pairing-confirm");
    const std::pair<const char*, const char*> cases[] = {
        {"For ada.\n\nPress Enter to connect it, or Ctrl-C.\n", "For ada."},
        {"For ada. Press Enter to connect it.\nmore\n", "For ada. \nmore"},
        {"For ada.\n\nPress Enter to connect it: \n\nFailed.\n", "For ada.\n\nFailed."},
        {"Press Enter", "Press Enter"},
    };
    for (const auto& [printed, shown] : cases) {
        state.pairing->displayText = printed;
        EXPECT_EQ(contentOf(state).terminal->text, shown);
    }
}

TEST(WindowContent, showsThePartOfTheWordsThatNamesTheAccount) {
    using enum WindowContent::Terminal::Shows;
    EXPECT_EQ(contentOf(sample("pairing-confirm")).terminal->shows, beginning);
    EXPECT_EQ(contentOf(sample("pairing-confirm-long")).terminal->shows, end);
    EXPECT_EQ(contentOf(sample("pairing-failed")).terminal->shows, end);
}

TEST(HelperTrouble, survivesChangesOfTheClock) {
    const auto trouble = *sample("reconnecting-trouble").helper.trouble;
    const auto end = [&](Seconds later) {
        const auto text =
            trouble.sentenceAt(sampleTime() + std::chrono::duration_cast<WallTime::duration>(later));
        return text.substr(text.find("exit 3") + 8);
    };
    EXPECT_EQ(end(Seconds(0)), "12 s ago. Next try in 8 s.");
    EXPECT_EQ(end(Seconds(9)), "21 s ago. It is starting.");
    EXPECT_EQ(end(std::chrono::hours(-24)), "0 s ago. Next try in 20 s.");
}

TEST(SampleScreens, showEverySection) {
    std::set<Section> sections;
    for (const auto& screen : sampleScreens()) {
        sections.insert(contentOf(screen.state).section);
        EXPECT_FALSE(contentOf(screen.state).announcement.empty()) << screen.name;
    }
    EXPECT_EQ(sections.size(), static_cast<std::size_t>(Section::link) + 1);
}

TEST(WindowContent, boundsAndCleansTextsFromOutside) {
    const std::string turned{'\xE2', '\x80', '\xAE'};  // changes the direction of writing
    const std::string bad = "\x1B[31m<b>" + turned + "txt\a\x01";
    const std::string hostile = bad + std::string(1'000'000, 'x') + bad + "\nend";
    AppState pairing = sample("pairing-confirm");
    pairing.pairing->displayText = hostile;
    AppState trouble = sample("reconnecting-trouble");
    trouble.helper.lastLines = trouble.helper.trouble->last = hostile;
    AppState card = sample("connected-update-waiting");
    card.helper.version = *card.waitingUpdate = hostile;
    for (const auto& state :
         {AppState{.setup = Setups::Failed{hostile}, .linkMessage = hostile}, AppState{.homeError = hostile},
          AppState{.setup = Setups::Installing{hostile}}, pairing, trouble, card}) {
        const auto content = contentOf(state);
        std::string shown =
            content.announcement + (content.message ? content.message->text : "") + content.heading;
        for (const auto& paragraph : content.paragraphs) shown += paragraph;
        if (content.terminal) shown += content.terminal->text;
        if (content.trouble) shown += content.trouble->last;
        if (content.card)
            for (const auto& row : content.card->rows) shown += row.value;
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
    const std::tuple<AppState::Download, std::optional<int>, const char*> cases[] = {
        {{18'149'999, 40'050'000}, 453, "18.1 MB of 40.1 MB"},
        {{950'000, std::nullopt}, std::nullopt, "1.0 MB"},
        {{5'000'000, 4'000'000}, std::nullopt, "5.0 MB"},
        {{5'000'000, 0}, std::nullopt, "5.0 MB"},
        {{-1, 2'000'000}, 0, "0.0 MB of 2.0 MB"},
        {{most, most}, 1000, "9223372036854.8 MB of 9223372036854.8 MB"},
    };
    for (const auto& [download, permille, text] : cases)
        EXPECT_EQ(DownloadProgress::of(download), (DownloadProgress{permille, text})) << text;
}

TEST(WindowContent, announcesImportantChanges) {
    const std::string connected = contentOf(sample("connected")).heading;
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"connect", "expired-link", *sample("expired-link").linkMessage},
        {"refused-link", "connected-refused-link", connected},
        {"pairing-reading", "pairing-confirm", contentOf(sample("pairing-confirm")).announcement},
        {"pairing-confirm", "pairing-confirm-long", ""},
        {"connected", "connected-one-switch",
         "Screen Recording is off One switch is still off. Turn on Screen Recording below."},
        {"reconnecting-first", "connected-no-driver",
         connected + " Accessibility is on Screen Recording is on You can close this window. tarnik stays in "
                     "the panel."},
        {"reconnecting-first", "reconnecting-trouble",
         "The helper stopped 5 times in a row, last with exit 3, 0 s ago. Next try in 20 s. Accessibility is "
         "on Screen Recording is on"},
    };
    for (const auto& [before, now, news] : cases)
        EXPECT_EQ(contentOf(sample(now)).newsSince(contentOf(sample(before))), news) << before << now;
    AppState more = sample("installing-download");
    more.download->received += 1'000'000;
    EXPECT_EQ(contentOf(more).newsSince(contentOf(sample("installing-download"))), "");
}

TEST(MenuContent, offersUpdatesOnlyWithAnUpdater) {
    const auto actions = [](UpdateCheck updates) {
        std::string text;
        for (const auto& entry : MenuContent::with(updates).entries)
            text += entry.action ? std::to_string(static_cast<int>(*entry.action)) : "|";
        return text;
    };
    EXPECT_EQ(actions(UpdateCheck::unavailable), "0|2");
    EXPECT_EQ(actions(UpdateCheck::available), "01|2");
}

}  // namespace
}  // namespace tarnik
