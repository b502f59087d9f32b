#include "app/model/AttentionWatch.h"

#include <string>
#include <utility>

#include "app/texts/NoticeTexts.h"
#include "app/texts/Translation.h"

namespace tarnik {
namespace {

// The identifiers of the notices.
constexpr std::string_view problemNotice = "problem";
constexpr std::string_view closedNotice = "window-closed";

constexpr const char* closeExplainedKey = "WindowCloseExplained";

UserNotice notice(std::string_view title, std::string_view body) {
    return {.title = translated(title), .body = translated(body)};
}

}  // namespace

AttentionWatch::AttentionWatch(Deps deps)
    : deps_(std::move(deps)),
      absence_(deps_.limits),
      status_(trayStatus(deps_.state(), AbsenceLength::brief)) {}

bool AttentionWatch::showsNotices() const {
    return deps_.notices.canShow && deps_.notices.canShow();
}

void AttentionWatch::stateChanged() {
    const auto& state = deps_.state();
    const auto now = deps_.now();
    absence_.observe(helperPresence(state), now);
    arm(now);
    const auto status = trayStatus(state, absence_.length());
    if (std::exchange(status_, status) != status) deps_.onStatus(status);
    setProblem(problemIn(state, absence_.length()));
    if (state.stopping) withdraw(closedNotice);
}

std::optional<AttentionWatch::Problem> AttentionWatch::problemIn(const AppState& state,
                                                                 AbsenceLength absence) {
    if (state.stopping) return std::nullopt;
    if (std::holds_alternative<Setups::Failed>(state.setup)) return Problem::installFailed;
    if (absence == AbsenceLength::tooLong) return Problem::helperAway;
    return std::nullopt;
}

void AttentionWatch::arm(TimePoint now) {
    const auto next = absence_.nextChange();
    if (next == wakeAt_) return;
    wakeAt_ = next;
    timer_.reset();
    if (!next) return;
    timer_ = deps_.mainThread.repeat(*next - now, [this] {
        wakeAt_.reset();  // a timer may fire early, and is then started again
        stateChanged();
    });
}

// The notice is shown later, because the same change of the state may open the window.
void AttentionWatch::setProblem(std::optional<Problem> problem) {
    if (std::exchange(problem_, problem) == problem) return;
    if (!problem) return withdraw(problemNotice);
    if (!showsNotices()) return;
    deps_.mainThread.post(guard_.wrap([this, problem] {
        if (problem_ == problem && !isSeen(*problem)) showProblem();
    }));
}

// A failed install ends the work that an open window shows. A long absence begins without an action of the
// user, when the open window may be behind others.
bool AttentionWatch::isSeen(Problem problem) const {
    switch (problem) {
        case Problem::installFailed: return deps_.windowIsOpen();
        case Problem::helperAway: return deps_.windowIsInUse();
    }
    return false;
}

void AttentionWatch::showProblem() {
    namespace Texts = NoticeTexts;
    switch (*problem_) {
        case Problem::installFailed:
            return deps_.notices.show(std::string(problemNotice),
                                      notice(Texts::installFailedTitle, Texts::installFailedBody));
        case Problem::helperAway:
            return deps_.notices.show(std::string(problemNotice),
                                      notice(Texts::helperAwayTitle, Texts::helperAwayBody));
    }
}

void AttentionWatch::windowSeen() {
    withdraw(problemNotice);
    withdraw(closedNotice);
}

void AttentionWatch::windowClosed(WindowSetting::Closing closing) {
    using enum WindowSetting::Closing;
    if (closing == unknown || closing == endsConnection || deps_.state().stopping) return;
    // Without a service for notices the first close is explained in a later run that has one.
    if (!showsNotices() || deps_.defaults.flag(closeExplainedKey)) return;
    deps_.defaults.setFlag(closeExplainedKey);
    const auto body = closing == staysInMenuBar ? NoticeTexts::closedInMenuBar : NoticeTexts::closedInPanel;
    deps_.notices.show(std::string(closedNotice), notice(NoticeTexts::closedTitle, body));
}

void AttentionWatch::withdraw(std::string_view id) const {
    if (deps_.notices.withdraw) deps_.notices.withdraw(std::string(id));
}

}  // namespace tarnik
