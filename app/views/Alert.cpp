#include "app/views/Alert.h"

#include <QLabel>
#include <QPushButton>
#include <utility>

#include "app/model/WindowTexts.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr int iconSide = 48;

// Paths stand in them; in characters.
constexpr std::size_t longestTitle = 200;
constexpr std::size_t longestText = 1000;

}  // namespace

std::unique_ptr<QMessageBox> makeAlert(const std::string& title, const std::string& text) {
    auto box = std::make_unique<QMessageBox>();
    box->setWindowTitle(qtText(WindowTexts::product));
    box->setWindowIcon(applicationIcon());
    box->setIconPixmap(applicationIcon().pixmap(QSize(iconSide, iconSide), box->devicePixelRatioF()));
    box->setText(qtText(sanitizedLine(title, longestTitle)));
    box->setInformativeText(qtText(sanitizedLine(text, longestText)));
    box->setStandardButtons(QMessageBox::Ok);
    box->button(QMessageBox::Ok)->setText(qtText(WindowTexts::ok));

    // The box has no words for these.
    for (auto* label : box->findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    if (auto* heading = box->findChild<QLabel*>("qt_msgbox_label")) {
        QFont font = heading->font();
        font.setWeight(QFont::DemiBold);
        heading->setFont(font);
    }

    box->setModal(true);
    return box;
}

void showAlert(const std::string& title, const std::string& text, std::function<void()> seen) {
    auto* box = makeAlert(title, text).release();
    if (seen) QObject::connect(box, &QMessageBox::finished, box, std::move(seen));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->show();
    box->raise();
    box->activateWindow();
}

}  // namespace tarnik
