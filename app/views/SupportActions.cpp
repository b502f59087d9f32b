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

void SupportActions::showDetails(QWidget& window) {
    if (dialog_) {
        dialog_->raise();
        dialog_->activateWindow();
        return;
    }
    dialog_ = new DetailsDialog(&window);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    dialog_->show();
    deps_.makeReport([dialog = dialog_](const std::expected<std::string, std::string>& report) {
        if (!dialog) return;
        if (report)
            dialog->setReport(*report);
        else
            dialog->setFailure(report.error());
    });
}

}  // namespace tarnik
