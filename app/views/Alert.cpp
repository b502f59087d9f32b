#include "app/views/Alert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include "app/model/WindowTexts.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"

namespace tarnik {
namespace {

constexpr int iconSide = 48;

}  // namespace

void showAlert(const std::string& title, const std::string& text) {
    auto* box = new QMessageBox;
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(qtText(WindowTexts::product));
    box->setWindowIcon(applicationIcon());
    box->setIconPixmap(applicationIcon().pixmap(QSize(iconSide, iconSide), box->devicePixelRatioF()));
    box->setText(qtText(title));
    box->setInformativeText(qtText(text));
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
    box->show();
    box->raise();
    box->activateWindow();
}

}  // namespace tarnik
