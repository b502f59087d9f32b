#include "core/node/LaunchdTakeover.h"

#include <algorithm>

#include <unistd.h>

#include "core/foundation/PropertyList.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/process/Spawner.h"

namespace tarnik::LaunchdTakeover {

namespace {

constexpr Seconds launchctlTimeout{30};
constexpr std::size_t launchctlOutputBytes = 65'536;
constexpr int cannotRunCode = 255;

constexpr std::string_view nodeLabel = TarnikIdentity::nodeLaunchdLabel;

std::optional<std::string> textOf(const PropertyList* value) {
    return value != nullptr ? value->asString() : std::nullopt;
}

std::vector<std::string> programWords(const PropertyList& agent) {
    std::vector<std::string> words;
    if (const PropertyList* arguments = agent.entry("ProgramArguments")) {
        for (const PropertyList& element : arguments->elements()) {
            if (auto word = element.asString()) words.push_back(*std::move(word));
        }
    }
    if (auto program = textOf(agent.entry("Program"))) words.push_back(*std::move(program));
    return words;
}

bool runs(const PropertyList& agent, const NodeHome& home, const Resolve& resolve) {
    const NodeHome resolved{.path = resolve(home.path)};
    const PropertyList* environment = agent.entry("EnvironmentVariables");
    const auto stateFolder =
        environment != nullptr ? textOf(environment->entry("OPENCLAW_STATE_DIR")) : std::nullopt;
    if (stateFolder && stateFolder->starts_with('/')) return resolve(*stateFolder) == resolved.path;

    const std::string serviceFolder = resolved.path + "/service-env/";
    return std::ranges::any_of(programWords(agent), [&](const std::string& word) {
        if (!word.starts_with('/')) return false;
        const std::string program = resolve(word);
        return program == resolved.nodeBinary() || program.starts_with(serviceFolder);
    });
}

}  // namespace

Deps Deps::production() {
    return {
        .launchctl =
            [](const std::vector<std::string>& arguments) {
                const auto output = Spawner::run({.executable = "/bin/launchctl",
                                                  .arguments = arguments,
                                                  .environment = {},
                                                  .timeout = launchctlTimeout,
                                                  .limit = launchctlOutputBytes});
                return output ? output->status : ExitStatus::exited(cannotRunCode);
            },
        .removeFile = [](const std::string& path) { return ::unlink(path.c_str()) == 0; },
    };
}

std::string plistPath(std::string_view homeDirectory) {
    return std::string(homeDirectory) + "/Library/LaunchAgents/" + std::string(nodeLabel) + ".plist";
}

Plan plan(const std::optional<std::string>& plist, const std::string& plistPath, const NodeHome& home,
          std::uint32_t uid, const Resolve& resolve) {
    if (!plist) return Nothing{};
    const auto agent = PropertyList::parse(*plist);
    if (!agent || !agent->isDictionary()) return LeaveAlone{"its LaunchAgent can't be read"};
    if (textOf(agent->entry("Label")) != nodeLabel) return LeaveAlone{"the LaunchAgent isn't tarnik's node"};
    if (!runs(*agent, home, resolve)) return LeaveAlone{"the LaunchAgent runs another node folder"};
    return TakeOver{.plistPath = plistPath,
                    .serviceTarget = "gui/" + std::to_string(uid) + "/" + std::string(nodeLabel)};
}

std::optional<Outcome> execute(const Plan& plan, const Deps& deps) {
    const auto* agent = std::get_if<TakeOver>(&plan);
    if (agent == nullptr) return std::nullopt;
    deps.launchctl({"bootout", agent->serviceTarget});
    const ExitStatus print = deps.launchctl({"print", agent->serviceTarget});
    return Outcome{.stopped = !print.succeeded(), .removed = deps.removeFile(agent->plistPath)};
}

}  // namespace tarnik::LaunchdTakeover
