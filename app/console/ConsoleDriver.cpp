#include "app/console/ConsoleDriver.h"

#include <utility>

#include "core/foundation/OneLine.h"
#include "core/process/FDReader.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

constexpr std::size_t longestLine = 2000;
constexpr std::string_view readyMessage = "desktop driver ready";

std::string describe(const SwitchSnapshot& switches) {
    const auto word = [](bool on) { return on ? "on" : "off"; };
    return std::string("accessibility=") + word(switches.accessibility) +
           " screenRecording=" + word(switches.screenRecording);
}

// The write end of a pipe whose lines are shown. The reader may outlive the program's loop.
UniqueFd attachOutput(const std::weak_ptr<ConsoleLoop>& weak, ConsoleOutput& output) {
    auto pipe = Spawner::pipe();
    if (!pipe) return {};
    auto partial = std::make_shared<std::string>();
    const auto reader =
        FDReader::start(std::move(pipe->readEnd), [weak, &output, partial](std::string_view chunk) {
            *partial += chunk;
            for (auto end = partial->find('\n'); end != std::string::npos; end = partial->find('\n')) {
                const auto line = oneLine(std::string_view(*partial).substr(0, end), longestLine);
                partial->erase(0, end + 1);
                if (const auto loop = weak.lock())
                    loop->post([&output, line] { output.line("driver", line); });
            }
            if (partial->size() > longestLine) partial->clear();
        });
    return reader ? std::move(pipe->writeEnd) : UniqueFd();
}

}  // namespace

ConsoleDriver::ConsoleDriver(std::shared_ptr<ConsoleLoop> loop, ConsoleOutput& output, Setup setup,
                             DriverHost::OnEndpointChange onEndpointChange)
    : loop_(std::move(loop)),
      output_(output),
      switches_(setup.switches),
      work_(SerialQueue::withThread("tarnik.driver")),
      host_(
          std::move(setup.host), makeDeps(setup.showsOutput),
          [this](const std::string& text) { loop_->post([this, text] { showMessage(text); }); },
          std::move(onEndpointChange)) {}

ConsoleDriver::~ConsoleDriver() {
    work_->close();
}

void ConsoleDriver::start() {
    if (switches_.allOn()) applySwitches();
}

void ConsoleDriver::set(Switch which, bool on) {
    (which == Switch::accessibility ? switches_.accessibility : switches_.screenRecording) = on;
    applySwitches();
}

void ConsoleDriver::post(std::function<void(DriverHost&)> task) {
    work_->post([this, task = std::move(task)] { task(host_); });
}

DriverHostDeps ConsoleDriver::makeDeps(bool showsOutput) const {
    if (!showsOutput) return DriverHostDeps::production();
    return DriverHostDeps::production(
        [weak = std::weak_ptr(loop_), this] { return attachOutput(weak, output_); });
}

void ConsoleDriver::applySwitches() {
    output_.line("switches", describe(switches_));
    const bool wanted = switches_.allOn();
    if (enabled_ == wanted) return;
    enabled_ = wanted;
    post([wanted](DriverHost& host) { host.setEnabled(wanted); });
}

void ConsoleDriver::showMessage(const std::string& text) {
    if (text != readyMessage) ++failures_;
    output_.message(text);
}

}  // namespace tarnik
