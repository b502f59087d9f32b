#include "app/control/Status.h"

#include <concepts>
#include <utility>

#include "app/control/JsonObject.h"

namespace tarnik {
namespace {

// The fields of a group of the status, written and read by the same list, so that the two can't differ.
class Writer {
public:
    void field(std::string_view name, const std::string& value) { json_.addText(name, value); }
    void field(std::string_view name, const std::optional<std::string>& value) { json_.addText(name, value); }
    void field(std::string_view name, std::int64_t value) { json_.addNumber(name, value); }
    void field(std::string_view name, std::optional<std::int64_t> value) { json_.addNumber(name, value); }
    void field(std::string_view name, bool value) { json_.addFlag(name, value); }
    void field(std::string_view name, WallTime value) { json_.addText(name, isoMilliseconds(value)); }
    void field(std::string_view name, const std::optional<WallTime>& value) {
        json_.addText(name, value ? std::optional(isoMilliseconds(*value)) : std::nullopt);
    }
    void field(std::string_view name, const std::vector<PolicyEntry>& entries) {
        std::string all;
        for (const auto& [key, value, strength] : entries) {
            JsonObject entry;
            entry.addText("key", key);
            entry.addText("value", value);
            entry.addFlag("forced", strength == PolicyStrength::forced);
            if (!all.empty()) all += ',';
            all += entry.text();
        }
        json_.addJson(name, "[" + all + "]");
    }
    void state(const std::string& value) { json_.addText("state", value); }

    template <class Group>
    void group(std::string_view name, const Group& value) {
        Writer inner;
        describe(inner, value);
        json_.addJson(name, inner.text());
    }
    template <class Group>
    void group(std::string_view name, const std::optional<Group>& value) {
        if (value) return group(name, *value);
        json_.addJson(name, "null");
    }

    std::string text() const { return json_.text(); }

private:
    JsonObject json_;
};

class Reader {
public:
    explicit Reader(const Json& json) : json_(json), isComplete_(json.isObject()) {}

    void field(std::string_view name, std::string& value) { value = textOf(name).value_or(""); }
    void field(std::string_view name, std::optional<std::string>& value) { value = textOf(name); }
    void field(std::string_view name, std::int64_t& value) { value = numberOf(name).value_or(0); }
    void field(std::string_view name, std::optional<std::int64_t>& value) { value = numberOf(name); }
    void field(std::string_view name, bool& value) {
        const Json* found = json_.member(name);
        value = found != nullptr && found->asBoolean().value_or(false);
    }
    void field(std::string_view name, WallTime& value) {
        value = parseIsoMilliseconds(textOf(name).value_or("")).value_or(WallTime());
    }
    void field(std::string_view name, std::optional<WallTime>& value) {
        value = parseIsoMilliseconds(textOf(name).value_or(""));
    }
    void field(std::string_view name, std::vector<PolicyEntry>& entries) {
        const Json* found = json_.member(name);
        if (found == nullptr) return;
        for (const auto& element : found->elements()) {
            const Reader inner(element);
            const Json* forced = element.member("forced");
            const bool isForced = forced != nullptr && forced->asBoolean().value_or(false);
            entries.push_back({.key = inner.textOf("key").value_or(""),
                               .value = inner.textOf("value").value_or(""),
                               .strength = isForced ? PolicyStrength::forced : PolicyStrength::byDefault});
        }
    }
    void state(std::string& value) {
        field("state", value);
        if (value.empty()) isComplete_ = false;
    }

    template <class Group>
    void group(std::string_view name, Group& value) {
        const Json* found = json_.member(name);
        if (found == nullptr) {
            isComplete_ = false;
            return;
        }
        Reader inner(*found);
        describe(inner, value);
        if (!inner.isComplete_) isComplete_ = false;
    }
    template <class Group>
    void group(std::string_view name, std::optional<Group>& value) {
        const Json* found = json_.member(name);
        if (found == nullptr || !found->isObject()) return;
        Reader inner(*found);
        describe(inner, value.emplace());
    }

    bool isComplete() const { return isComplete_; }

private:
    std::optional<std::string> textOf(std::string_view name) const {
        const Json* found = json_.member(name);
        return found != nullptr ? found->asString() : std::nullopt;
    }
    std::optional<std::int64_t> numberOf(std::string_view name) const {
        const Json* found = json_.member(name);
        return found != nullptr ? found->asInteger() : std::nullopt;
    }

    const Json& json_;
    bool isComplete_;
};

// Both a group and a constant one.
template <class Group, class Type>
concept Is = std::same_as<std::remove_const_t<Group>, Type>;

template <class Format, Is<Status::Program> Group>
void describe(Format& format, Group& program) {
    format.field("running", program.isRunning);
    format.field("version", program.version);
    format.field("pid", program.pid);
    format.field("face", program.face);
    format.field("since", program.since);
}

template <class Format, Is<Status::Connection> Group>
void describe(Format& format, Group& connection) {
    format.state(connection.state);
    format.field("sentence", connection.sentence);
    format.field("reason", connection.reason);
    format.field("joined", connection.joined);
}

template <class Format, Is<ChildHistory::End> Group>
void describe(Format& format, Group& end) {
    format.field("at", end.at);
    format.field("status", end.status);
    format.field("ranForMs", end.ranForMs);
}

template <class Format, Is<Status::Child> Group>
void describe(Format& format, Group& child) {
    format.state(child.state);
    format.field("version", child.version);
    format.field("pid", child.history.pid);
    format.field("since", child.history.since);
    format.field("restarts", child.history.restarts);
    format.group("lastExit", child.history.lastEnd);
    format.field("nextTry", child.history.nextTry);
    format.field("reason", child.reason);
}

template <class Format, Is<Status::Switches> Group>
void describe(Format& format, Group& switches) {
    format.field("accessibility", switches.accessibility);
    format.field("screenRecording", switches.screenRecording);
}

template <class Format, Is<Status::Update> Group>
void describe(Format& format, Group& update) {
    format.state(update.state);
    format.field("version", update.version);
}

template <class Format, Is<Status::Install> Group>
void describe(Format& format, Group& install) {
    format.state(install.state);
    format.field("text", install.text);
    format.field("receivedBytes", install.receivedBytes);
    format.field("totalBytes", install.totalBytes);
}

template <class Format, Is<Status::Folders> Group>
void describe(Format& format, Group& folders) {
    format.field("nodeHome", folders.nodeHome);
    format.field("applicationSupport", folders.applicationSupport);
    format.field("logs", folders.logs);
    format.field("socket", folders.socket);
}

template <class Format, Is<Status::Managed> Group>
void describe(Format& format, Group& policy) {
    format.state(policy.state);
    format.field("sentence", policy.sentence);
    format.field("settings", policy.settings);
}

template <class Format, Is<Status> Group>
void describe(Format& format, Group& status) {
    format.group("program", status.program);
    format.group("connection", status.connection);
    format.group("helper", status.helper);
    format.group("driver", status.driver);
    format.group("switches", status.switches);
    format.group("update", status.update);
    format.group("install", status.install);
    format.group("folders", status.folders);
    format.group("policy", status.policy);
}

}  // namespace

std::string Status::json() const {
    Writer writer;
    describe(writer, *this);
    return writer.text();
}

std::optional<Status> Status::of(const Json& json) {
    Status status;
    Reader reader(json);
    describe(reader, status);
    return reader.isComplete() ? std::optional(std::move(status)) : std::nullopt;
}

bool Status::isConnected() const {
    return connection.state == ConnectionState::connected;
}

}  // namespace tarnik
