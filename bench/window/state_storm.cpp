// Measures how soon the window reacts while it draws a thousand states per second.
//
// Prints one JSON line: for each kind of storm the number of accepted and drawn states, the processor time,
// the delay of other tasks on the main thread in milliseconds, and the delay by the window's own work,
// without the load of other programs. The first storm has no states; it is the floor.
#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/model/ChangeFeed.h"
#include "app/model/SampleScreens.h"
#include "app/model/WindowContent.h"
#include "app/views/MainWindow.h"
#include "app/views/QtMainThread.h"
#include "core/foundation/Time.h"

namespace {

using namespace tarnik;
using namespace std::chrono_literals;

constexpr auto stormLasts = 3s;
constexpr auto betweenStates = 1ms;
constexpr auto betweenQuestions = 5ms;

// Makes the state with this number.
using States = std::function<AppState(int number)>;

// Each state adds a line of the helper's command.
AppState writing(int number) {
    static AppState state = [] {
        AppState pairing;
        pairing.setup = Setups::Ready{};
        pairing.node = NodeStates::Pairing{};
        pairing.pairing = PairingSession::Snapshot{};
        return pairing;
    }();
    auto& text = state.pairing->displayText;
    if (text.size() > 20'000) text.erase(0, text.find('\n', 1000) + 1);
    text += "Line " + std::to_string(number) + " of what the helper has to say about it.\n";
    return state;
}

// Consecutive states have nothing in common.
AppState anotherScreen(int number) {
    static const auto screens = sampleScreens();
    return screens[static_cast<std::size_t>(number) % screens.size()].state;
}

// Calls `each` at this rate on its own thread until the storm ends.
std::thread every(std::chrono::milliseconds interval, std::function<void(int)> each) {
    return std::thread([interval, each = std::move(each)] {
        const auto start = std::chrono::steady_clock::now();
        for (int number = 0; number * interval < stormLasts; ++number) {
            std::this_thread::sleep_until(start + number * interval);
            each(number);
        }
    });
}

// A model that publishes a change whenever it reads the switches. The drawn state is that of the storm.
std::shared_ptr<AppModel> changingModel(const MainThread& mainThread) {
    AppModelDeps deps;
    deps.platform = {.mainThread = mainThread,
                     .defaults = {.text = [](const std::string&) { return std::nullopt; },
                                  .flag = [](const std::string&) { return true; },
                                  .setFlag = [](const std::string&) {},
                                  .clearFlag = [](const std::string&) {}},
                     .switches = {.isOn = [on = false](Switch which) mutable {
                         if (which == Switch::accessibility) on = !on;
                         return on;
                     }}};
    deps.makeQueue = &SerialQueue::withThread;
    return std::make_shared<AppModel>(
        HostEnvironment{.userFolder = "/nonexistent", .settings = BuildSettings::defaults()},
        std::move(deps));
}

// Returns the processor time of this thread in milliseconds.
double usedByThread() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1000.0 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e6;
}

// Records the processor time of each event, such as a change, a layout or a paint.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        const double before = usedByThread();
        ++depth_;
        const bool result = QApplication::notify(receiver, event);
        if (--depth_ == 0) events_.push_back(usedByThread() - before);
        return result;
    }
    std::vector<double> takeEvents() { return std::exchange(events_, {}); }

private:
    int depth_ = 0;
    std::vector<double> events_;
};

// Returns the delay that 99 of 100 questions at random times have until the end of the present event.
double ownDelay(const std::vector<double>& events) {
    constexpr double step = 0.01;
    constexpr double share = 0.01;
    const double most = share * std::chrono::duration<double, std::milli>(stormLasts).count();
    double delay = 0;
    const auto later = [&](double sum, double event) { return sum + std::max(0.0, event - delay); };
    while (std::accumulate(events.begin(), events.end(), 0.0, later) > most) delay += step;
    return delay;
}

double at(const std::vector<double>& sorted, double part) {
    return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

std::string storm(const char* name, TimedApplication& application, MainWindow& window,
                  const MainThread& mainThread, const States& states) {
    const Url origin = *Url::parse("https://tarnik.invalid");
    std::vector<double> late;
    (void)application.takeEvents();
    int taken = 0;
    int drawn = 0;
    AppState state;
    const auto model = changingModel(mainThread);
    const ChangeFeed feed(model, mainThread, [&](const AppState&) {
        window.setContent(WindowContent::of(state, {.webOrigin = origin}));
        ++drawn;
    });
    auto changes = every(betweenStates, [&](int number) {
        if (!states) return;
        mainThread.post([&, number] {
            state = states(number);
            ++taken;
            model->refreshSwitches();
        });
    });
    auto questions = every(betweenQuestions, [&](int) {
        mainThread.post([&, asked = std::chrono::steady_clock::now()] {
            late.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - asked).count());
        });
    });
    const auto usedBefore = std::clock();
    QTimer::singleShot(stormLasts, [] { QApplication::quit(); });
    QApplication::exec();
    const int inTime = taken;
    const double used = 1000.0 * static_cast<double>(std::clock() - usedBefore) / CLOCKS_PER_SEC;
    changes.join();
    questions.join();
    QApplication::processEvents();  // queued calls reference local variables
    std::ranges::sort(late);
    const auto events = application.takeEvents();
    char line[240];
    std::snprintf(
        line, sizeof line,
        R"({"name":"%s","seconds":3,"taken":%d,"drawn":%d,"used":%.1f,"half":%.3f,"most":%.3f,"worst":%.3f,"own":%.2f,"longest":%.3f})",
        name, inTime, drawn, used, at(late, 0.5), at(late, 0.99), late.back(), ownDelay(events),
        events.empty() ? 0 : std::ranges::max(events));
    return line;
}

}  // namespace

int main(int argc, char** argv) {
    const QtMainThread loop;
    TimedApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto mainThread = loop.operations();
    MainWindow window(
        WindowContent::of(anotherScreen(0), {.webOrigin = *Url::parse("https://tarnik.invalid")}),
        [](const auto&, const auto&) {});
    window.present();
    const auto nothing = storm("nothing", application, window, mainThread, nullptr);
    const auto text = storm("terminal text", application, window, mainThread, writing);
    const auto screens = storm("every screen in turn", application, window, mainThread, anotherScreen);
    std::printf("[%s,%s,%s]\n", nothing.c_str(), text.c_str(), screens.c_str());
    return 0;
}
