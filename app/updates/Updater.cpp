#include "app/updates/Updater.h"

#include <chrono>
#include <ctime>
#include <utility>

#include "core/foundation/TextCleanup.h"

namespace tarnik {

namespace {

// The feed supplies the version; the bound keeps the log readable.
constexpr std::size_t longestVersion = 64;
constexpr std::size_t longestReason = 300;

std::string wholeSeconds(Seconds duration) {
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(duration).count());
}

}  // namespace

int Updater::localHour() {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    ::localtime_r(&now, &local);
    return local.tm_hour;
}

Updater::Updater(const UpdateSettings& settings, Deps deps) : deps_(std::move(deps)) {
    if (!settings.isComplete() || !deps_.framework.makeController) return;
    if (isRule(UpdateRule::Kind::never) && deps_.rule->isForced()) return;
    controller_ = deps_.framework.makeController(
        guard_.wrap([this](const std::string& version, UpdateFramework::Install install) {
            updateReady(version, std::move(install));
            return true;
        }));
    startFramework();
    controller_->setAutomaticallyChecks(isAutomatic());
    controller_->setAutomaticallyDownloads(isAutomatic());
    timer_ = deps_.mainThread.repeat(QuietWatch::sampleEvery, [this] { look(); });
}

bool Updater::startFramework() {
    if (hasStarted_) return true;
    const auto started = controller_->start();
    hasStarted_ = started.has_value();
    if (!started) deps_.log("no updates: " + sanitizedLine(started.error(), longestReason));
    return hasStarted_;
}

void Updater::updateReady(const std::string& version, UpdateFramework::Install install) {
    deps_.log("update " + sanitizedLine(version, longestVersion) +
              " is ready; installing at the first quiet moment");
    if (loop_.quitting) return;
    install_ = std::move(install);
    loop_.updateReady();
}

void Updater::look() {
    const TimePoint now = deps_.now();
    if (looking_ && now - looking_->since < longestLook) return;
    if (looking_) loop_.watch.reset();  // the lost sample may have been a busy one
    looking_.reset();
    if (!sample_) return;

    looking_ = Look{.number = ++looks_, .since = now};
    const auto sample = sample_;  // sample_ may be destroyed before the call returns
    sample(guard_.wrap([this, number = looks_](const ActivitySample& seen) { looked(number, seen); }));
}

void Updater::looked(std::uint64_t number, const ActivitySample& sample) {
    if (!looking_ || looking_->number != number) return;  // a late or repeated answer
    looking_.reset();
    const TimePoint now = deps_.now();
    if (deps_.rule && !deps_.rule->value.allowsHour(deps_.hour())) return loop_.watch.observe(sample);
    if (loop_.observe(sample, now) != UpdateInstallAction::installNow) return;
    deps_.log("quiet for " + wholeSeconds(now - loop_.watch.quietSince().value_or(now)) +
              " s: installing the update and relaunching");
    install();
}

// A face without this entry in its menu may still have a command.
void Updater::checkForUpdates() {
    if (!offersCheck()) return;
    const auto action = loop_.menuClick();
    if (action == UpdateInstallAction::checkWithSparkle && controller_) {
        const auto& next = startFramework() ? controller_->checkForUpdates : controller_->showStartFailure;
        next();
    }
    if (action != UpdateInstallAction::installNow) return;
    deps_.log("Check for Updates… with an update waiting: installing it now");
    install();
}

// Clears install_ first, so the operation runs only once. The operation may destroy this updater.
void Updater::install() {
    const auto install = std::exchange(install_, nullptr);
    if (install) install();
}

void Updater::appWillQuit() {
    timer_.reset();
    install_ = nullptr;
    if (loop_.quit() == UpdateInstallAction::installAtQuit)
        deps_.log("quitting with an update ready: it installs as the app quits");
}

}  // namespace tarnik
