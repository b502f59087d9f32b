#include "app/views/SupportActions.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>
#include <utility>

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/Alert.h"
#include "app/views/DetailsDialog.h"
#include "app/views/QtText.h"

namespace tarnik {

std::function<bool(const std::string&)> SupportActions::desktopOpener() {
    return
        [](const std::string& path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(qtText(path))); };
}

bool SupportActions::perform(const UserIntent& intent, QWidget& window) {
    if (intent.kind == UserIntent::Kind::showLog) {
        showLog();
        return true;
    }
    if (intent.kind != UserIntent::Kind::copyDetails) return false;
    showDetails(window);
    return true;
}

// The log is absent until the helper has written something.
void SupportActions::showLog() const {
    const QFileInfo log(qtText(deps_.log));
    const auto folder = log.absolutePath().toStdString();
    if (log.exists() && deps_.open(deps_.log)) return;
    if (QFileInfo::exists(log.absolutePath()) && deps_.open(folder)) return;
    showAlert(translated(WindowTexts::logNotOpened),
              translated(WindowTexts::logPlace, {{"path", deps_.log}}));
}

// One report is made at a time. Its result goes to the dialog that is open then.
void SupportActions::showDetails(QWidget& window) {
    auto& dialog = details_->dialog;
    if (!dialog) {
        dialog = new DetailsDialog(&window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
    }
    dialog->raise();
    dialog->activateWindow();
    if (details_->isMaking || dialog->hasReport()) return;
    details_->isMaking = true;
    deps_.makeReport([details = details_](const std::expected<std::string, std::string>& report) {
        details->isMaking = false;
        if (!details->dialog) return;
        if (report)
            details->dialog->setReport(*report);
        else
            details->dialog->setFailure(report.error());
    });
}

}  // namespace tarnik
