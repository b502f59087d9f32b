#include "app/views/DetailsDialog.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>

#include "app/texts/Translation.h"
#include "app/texts/WindowTexts.h"
#include "app/views/Announcer.h"
#include "app/views/FocusRing.h"
#include "app/views/Grid.h"
#include "app/views/ProgressBar.h"
#include "app/views/QtText.h"
#include "app/views/SymbolIcon.h"
#include "app/views/TerminalBox.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

// In points.
constexpr QSize designSize(560, 480);
constexpr int progressHeight = 4;

QPushButton* makeButton(std::string_view title, QWidget* parent) {
    auto* button = new QPushButton(qtText(translated(title)), parent);
    button->setAutoDefault(false);
    return button;
}

}  // namespace

DetailsDialog::DetailsDialog(QWidget* parent)
    : QDialog(parent),
      text_(new TextLabel(TextLabel::Role::body, this)),
      progress_(new ProgressBar(this)),
      box_(new TerminalBox(this)),
      copy_(makeButton(WindowTexts::copy, this)),
      announcer_(new Announcer(this)),
      ring_(new FocusRing(this)) {
    setWindowTitle(qtText(translated(WindowTexts::detailsTitle)));
    setWindowIcon(applicationIcon());
    auto* const close = makeButton(WindowTexts::close, this);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(copy_, &QPushButton::clicked, this, [this] {
        QGuiApplication::clipboard()->setText(report_);
        say(translated(WindowTexts::detailsCopied));
    });
    copy_->setDefault(true);
    copy_->setEnabled(false);

    text_->setPlainText(translated(WindowTexts::detailsCollecting));
    updateAccessibleName(*progress_, translated(WindowTexts::busyName));
    progress_->setFixedHeight(Grid::scaled(font(), progressHeight));
    progress_->setProgress({});
    progress_->show();
    updateAccessibleName(*box_, translated(WindowTexts::detailsName));
    box_->show();

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(close);
    buttons->addStretch(1);
    buttons->addWidget(copy_);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Grid::margin, Grid::margin, Grid::margin, Grid::margin);
    layout->setSpacing(Grid::dividerGap);
    layout->addWidget(text_);
    layout->addWidget(progress_);
    layout->addWidget(box_, 1);
    layout->addLayout(buttons);
    const QSize wanted(Grid::scaled(font(), designSize.width()), Grid::scaled(font(), designSize.height()));
    resize(wanted.boundedTo(screen()->availableGeometry().size()));
}

void DetailsDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange) box_->setSystemFont(font());
}

void DetailsDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    QMetaObject::invokeMethod(this, [this] { ring_->update(); }, Qt::QueuedConnection);  // after the layout
}

void DetailsDialog::say(const std::string& sentence) {
    text_->setPlainText(sentence);
    announcer_->announce(sentence);
}

void DetailsDialog::setReport(const std::string& report) {
    say(translated(WindowTexts::detailsText));
    progress_->hide();
    report_ = qtText(report);
    box_->setLongText(report);
    copy_->setEnabled(true);
    copy_->setFocus();
}

bool DetailsDialog::hasReport() const {
    return copy_->isEnabled();
}

void DetailsDialog::setFailure(const std::string& sentence) {
    say(sentence);
    progress_->hide();
}

}  // namespace tarnik
