#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <functional>
#include <string>

#include <unistd.h>

// The protocol between these programs and the scripts. Standard output has JSON lines. Standard input has
// command lines.
namespace devkit {

inline void say(const QJsonObject& what) {
    std::puts(QJsonDocument(what).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

// Splits standard input into lines.
class StandardInput {
public:
    // Blocks until input arrives. Passes complete lines to `take`, without their line feeds. Returns false at
    // the end of the input.
    bool read(const std::function<void(const std::string&)>& take) {
        char buffer[4096];
        const auto count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) return false;
        pending_.append(buffer, static_cast<std::size_t>(count));
        for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
            const auto line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            take(line);
        }
        return true;
    }

private:
    std::string pending_;
};

}  // namespace devkit
