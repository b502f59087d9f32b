#pragma once

#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/process/FDReader.h"
#include "core/process/LockedData.h"
#include "core/process/PtyProcess.h"
#include "tests/support/Eventually.h"

namespace tarnik {

// A child on a terminal, and its output.
class Terminal {
public:
    explicit Terminal(const std::string& executable, std::vector<std::string> arguments = {})
        : pty(*PtyProcess::spawn({.executable = executable, .arguments = std::move(arguments)})),
          reader_(
              *FDReader::start(pty->takeMaster(), [this](std::string_view text) { output_.append(text); })) {}
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        pty->child().signal(SIGKILL);
        EXPECT_TRUE(reader_->waitForEOF(Seconds(20)));
    }

    std::optional<ExitStatus> exit() const { return pty->child().waitForExit(Seconds(20)); }
    // Returns the whole output without carriage returns.
    std::string wholeOutput() const {
        EXPECT_TRUE(reader_->waitForEOF(Seconds(20)));
        std::string text = output_.data();
        std::erase(text, '\r');
        return text;
    }
    bool prints(const std::string& text) const {
        return eventually([&] { return output_.data().contains(text); });
    }

    const std::shared_ptr<PtyProcess> pty;

private:
    LockedData output_{1 << 20};
    const std::shared_ptr<FDReader> reader_;
};

}  // namespace tarnik
