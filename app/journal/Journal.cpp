#include "app/journal/Journal.h"

#include <utility>

#include <unistd.h>

#include "app/journal/SecretFilter.h"
#include "core/foundation/Files.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

// Removes control characters first, because they could divide a secret. Cuts the text last, because the
// filter doesn't recognise the beginning of a secret.
std::string publicText(std::string_view text) {
    return sanitizedLine(withoutSecrets(sanitizedLine(text, text.size())), Journal::longestText);
}

JournalEvent::Fields publicFields(JournalEvent::Fields fields) {
    for (auto& [name, value] : fields) {
        if (auto* text = std::get_if<std::string>(&value)) *text = publicText(*text);
    }
    return fields;
}

// Returns true if the file's last line has no line feed.
bool endsInsideLine(const std::string& path) {
    const UniqueFd file = openRegularFile(path);
    char last = '\n';
    return file && ::lseek(file.get(), -1, SEEK_END) >= 0 && readInto(file, {&last, 1}) == 1U && last != '\n';
}

template <class Element>
void appendBounded(std::deque<Element>& list, Element element, std::size_t limit) {
    if (list.size() >= limit) list.pop_front();
    list.push_back(std::move(element));
}

}  // namespace

Journal::Deps Journal::Deps::production() {
    return {.now = &std::chrono::system_clock::now, .makeQueue = &SerialQueue::withThread};
}

std::string Journal::pathIn(const SystemFolders& folders) {
    return folders.stateFolder() + "/" + std::string(fileName);
}

Journal::Journal(const std::string& path, Deps deps)
    : deps_(std::move(deps)),
      file_{.file = RotatingFile(path, deps_.fileBytes), .path = path},
      queue_(deps_.makeQueue("tarnik.journal")) {}

Journal::~Journal() {
    queue_->close();
}

void Journal::record(EventCode code, std::string_view sentence, JournalEvent::Fields fields) {
    const JournalEvent event{.time = std::chrono::floor<std::chrono::milliseconds>(deps_.now()),
                             .code = code,
                             .sentence = publicText(sentence),
                             .fields = publicFields(std::move(fields))};
    std::vector<Observer> observers;
    bool wasWriting = false;
    {
        const MutexLock lock(mutex_);
        appendBounded(events_, event, keptEvents);
        appendBounded(waiting_, event.json(), waitingLines);
        observers = observers_;
        wasWriting = std::exchange(isWriting_, true);
    }
    if (!wasWriting) queue_->post([this] { write(); });
    for (const auto& observer : observers) observer(event);
}

std::vector<JournalEvent> Journal::events() const {
    const MutexLock lock(mutex_);
    return {events_.begin(), events_.end()};
}

std::vector<JournalEvent> Journal::observe(Observer observer) {
    const MutexLock lock(mutex_);
    observers_.push_back(std::move(observer));
    return {events_.begin(), events_.end()};
}

void Journal::flush(Seconds timeout) {
    const TimePoint deadline = after(steadyNow(), timeout);
    MutexLock lock(mutex_);
    while (isWriting_ && written_.waitUntil(lock, deadline)) continue;
}

// Ends an open line first, so that it damages no other line.
void Journal::LineFile::append(const std::string& line) {
    if (!lineIsOpen) lineIsOpen = endsInsideLine(path);  // an earlier run may have failed to write
    lineIsOpen = !file.append((*lineIsOpen ? "\n" : "") + line + "\n");
}

void Journal::write() {
    MutexLock lock(mutex_);
    while (!waiting_.empty()) {
        const auto lines = std::exchange(waiting_, {});
        lock.unlock();
        for (const auto& line : lines) file_.append(line);
        lock.lock();
    }
    isWriting_ = false;
    written_.notifyAll();
}

}  // namespace tarnik
