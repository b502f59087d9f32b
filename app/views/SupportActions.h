#pragma once

#include <QPointer>
#include <QWidget>
#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "app/model/UserIntent.h"

namespace tarnik {

class DetailsDialog;

// Performs the intents that only a desktop can: opens the helper's log, and shows the details of a failure
// before the user copies them. Owned by the handler of the window's intents. Main thread only.
class SupportActions {
public:
    struct Deps {
        using OnReport = std::function<void(const std::expected<std::string, std::string>&)>;

        // Gathers the redacted report and passes it, or a sentence about a failure, to the callback on the
        // main thread.
        std::function<void(const OnReport&)> makeReport;
        std::string log;  // the path of the helper's log
        std::function<bool(const std::string& path)>
            open;  // opens a file or folder; returns false on failure
    };

    // Opens files with the programs that the user has chosen for them.
    static std::function<bool(const std::string&)> desktopOpener();

    explicit SupportActions(Deps deps) : deps_(std::move(deps)) {}

    // Returns false if the intent isn't one of this class. `window` becomes the parent of a dialog.
    bool perform(const UserIntent& intent, QWidget& window);

private:
    struct Details {
        QPointer<DetailsDialog> dialog;  // owned by the window
        bool isMaking = false;           // a report
    };

    void showLog() const;
    void showDetails(QWidget& window);

    const Deps deps_;
    const std::shared_ptr<Details> details_ =
        std::make_shared<Details>();  // also held by a report's callback
};

}  // namespace tarnik
