#include "app/views/Alert.h"

#include <QLabel>
#include <QPushButton>
#include <utility>

#include "app/texts/ComposedTexts.h"
#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"
#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr int iconSide = 48;

// In characters. The texts may contain long paths.
constexpr std::size_t maxTitleLength = 200;
constexpr std::size_t maxTextLength = 1000;

}  // namespace

std::unique_ptr<QMessageBox> makeAlert(const std::string& title, const std::string& text) {
    auto box = std::make_unique<QMessageBox>();
    box->setWindowTitle(qtText(WindowTexts::product));
    box->setWindowIcon(applicationIcon());
    box->setIconPixmap(applicationIcon().pixmap(QSize(iconSide, iconSide), box->devicePixelRatioF()));
    box->setText(qtText(sanitizedLine(translatedMessage(title), maxTitleLength)));
    box->setInformativeText(qtText(sanitizedLine(translatedMessage(text), maxTextLength)));
    box->setStandardButtons(QMessageBox::Ok);
    box->button(QMessageBox::Ok)->setText(qtText(translated(WindowTexts::ok)));

    // QMessageBox has no properties for the text format and the title's weight.
    for (auto* label : box->findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
    if (auto* heading = box->findChild<QLabel*>("qt_msgbox_label")) {
        QFont font = heading->font();
        font.setWeight(QFont::DemiBold);
        heading->setFont(font);
    }

    box->setModal(true);
    return box;
}

void showAlert(const std::string& title, const std::string& text, std::function<void()> closed) {
    auto* box = makeAlert(title, text).release();
    if (closed) QObject::connect(box, &QMessageBox::finished, box, std::move(closed));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->show();
    box->raise();
    box->activateWindow();
}

}  // namespace tarnik
