#include "app/views/ConnectSection.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/views/AccessibleName.h"
#include "app/views/LinkField.h"
#include "app/views/ProgressBar.h"
#include "app/views/Spinner.h"
#include "app/views/SymbolView.h"
#include "app/views/TerminalBox.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;

constexpr int symbolSide = 21;
constexpr int messageSpinnerSide = 18;
constexpr int symbolGap = 10;
constexpr int blockGap = 12;  // between what belongs together
constexpr int paragraphGap = 8;
constexpr int progressGap = 6;
constexpr int fieldHeight = 36;
constexpr int fieldPadding = 5;      // beside what is typed
constexpr int longestLink = 65'536;  // as much as is read of one

QBoxLayout* addLine(QBoxLayout& layout) {
    auto* line = new QHBoxLayout;
    line->setSpacing(symbolGap);
    layout.addLayout(line);
    return line;
}

// On the height of its first line, or all in the middle.
void align(QBoxLayout& line, Qt::Alignment alignment) {
    for (int i = 0; i < line.count(); ++i) line.itemAt(i)->setAlignment(alignment);
    line.invalidate();
}

bool isBusy(const WindowContent& content) {
    return std::holds_alternative<WindowContent::Busy>(content.progress);
}

// Whether it is the link that is worked on, rather than what the heading names.
bool isBusyWithLink(const WindowContent& content) {
    const bool headingWorks = content.section == Section::pairing || content.section == Section::installing ||
                              content.section == Section::stopping;
    return isBusy(content) && content.message && !headingWorks;
}

bool isLinkUsed(const WindowContent& content) {
    return content.section == Section::pairing || content.section == Section::replaceOffer ||
           content.section == Section::connected;
}

void setSpinner(Spinner& spinner, const WindowContent& content, bool spins) {
    if (spins) updateAccessibleName(spinner, content.progressAccessibleName);
    spinner.setVisible(spins);
}

}  // namespace

ConnectSection::ConnectSection(int width, OnButton onButton, QWidget* parent)
    : QWidget(parent),
      paragraphs_(new QWidget(this)),
      progress_(new ProgressBar(this)),
      progressText_(new TextLabel(TextLabel::Role::quiet, this)),
      field_(new LinkField(this)),
      buttons_(new ButtonRow(width, std::move(onButton), this)) {
    auto* paragraphLayout = new QVBoxLayout(paragraphs_);
    paragraphLayout->setContentsMargins(0, 0, 0, 0);
    paragraphLayout->setSpacing(paragraphGap);
    field_->setMinimumHeight(fieldHeight);
    field_->setTextMargins(fieldPadding, 0, fieldPadding, 0);
    field_->setMaxLength(longestLink);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(blockGap);
    addHeading(*layout);
    layout->addWidget(paragraphs_);
    auto* progressLayout = new QVBoxLayout;
    progressLayout->setSpacing(progressGap);
    progressLayout->addWidget(progress_);
    progressLayout->addWidget(progressText_);
    layout->addLayout(progressLayout);
    layout->addWidget(field_);
    addMessage(*layout);
    layout->addWidget(buttons_);

    // Screen readers go through the children in this order: that on the screen.
    const std::initializer_list<QWidget*> drawn{symbol_,         spinnerBefore_, heading_,      spinnerAfter_,
                                                paragraphs_,     progress_,      progressText_, field_,
                                                messageSpinner_, message_,       buttons_};
    for (auto* child : drawn) child->raise();
}

void ConnectSection::addHeading(QBoxLayout& layout) {
    heading_ = new TextLabel(TextLabel::Role::heading, this);
    const int height = heading_->lineHeight();
    symbol_ = new SymbolView(symbolSide, height, this);
    spinnerBefore_ = new Spinner(symbolSide, height, this);
    spinnerAfter_ = new Spinner(symbolSide, height, this);
    headingLine_ = addLine(layout);
    headingLine_->addWidget(symbol_);
    headingLine_->addWidget(spinnerBefore_);
    headingLine_->addWidget(heading_, 1);
    headingLine_->addWidget(spinnerAfter_);
}

void ConnectSection::addMessage(QBoxLayout& layout) {
    message_ = new TextLabel(TextLabel::Role::body, this);
    messageSpinner_ = new Spinner(messageSpinnerSide, message_->lineHeight(), this);
    messageLine_ = addLine(layout);
    messageLine_->addWidget(messageSpinner_);
    messageLine_->addWidget(message_, 1);
}

bool ConnectSection::setContent(const WindowContent& content) {
    const auto before = controls();
    setHeading(content);
    setParagraphs(content.paragraphs);
    setProgress(content);
    setTerminal(content);
    setLinkField(content);
    setMessage(content);
    buttons_->setButtons(content.buttons);
    placeButtons(content);
    return controls() != before;
}

bool ConnectSection::takesHeight() const {
    return terminal_ && !terminal_->isHidden();
}

std::vector<QWidget*> ConnectSection::controls() const {
    std::vector<QWidget*> controls;
    if (takesHeight()) controls.push_back(terminal_);
    if (!field_->isHidden()) controls.push_back(field_);
    controls.insert(controls.end(), buttons_->buttons().begin(), buttons_->buttons().end());
    return controls;
}

void ConnectSection::setHeading(const WindowContent& content) {
    if (content.symbol) symbol_->setSymbol(*content.symbol);
    symbol_->setVisible(content.symbol.has_value());
    heading_->setPlainText(content.heading);
    const bool spins = isBusy(content) && !isBusyWithLink(content);
    setSpinner(*spinnerBefore_, content, spins && !content.symbol);
    setSpinner(*spinnerAfter_, content, spins && content.symbol);
}

void ConnectSection::setParagraphs(const std::vector<std::string>& paragraphs) {
    while (paragraphLabels_.size() < paragraphs.size()) {
        paragraphLabels_.push_back(new TextLabel(TextLabel::Role::body, paragraphs_));
        paragraphs_->layout()->addWidget(paragraphLabels_.back());
    }
    for (std::size_t i = 0; i < paragraphLabels_.size(); ++i)
        paragraphLabels_[i]->setPlainText(i < paragraphs.size() ? paragraphs[i] : std::string());
    paragraphs_->setVisible(!paragraphs.empty());
}

void ConnectSection::setProgress(const WindowContent& content) {
    const auto* download = std::get_if<DownloadProgress>(&content.progress);
    if (download) {
        updateAccessibleName(*progress_, content.progressAccessibleName);
        progress_->setProgress(*download);
    }
    progress_->setVisible(download);
    progressText_->setPlainText(download ? download->text : std::string());
}

void ConnectSection::setTerminal(const WindowContent& content) {
    // Most runs never need it, nor its font.
    if (!terminal_ && content.terminal) {
        terminal_ = new TerminalBox(this);
        terminal_->stackUnder(field_);
        auto* below = static_cast<QBoxLayout*>(layout());
        below->insertWidget(below->indexOf(field_), terminal_, 1);
    }
    if (!terminal_) return;
    if (content.terminal)
        terminal_->setTerminal(*content.terminal);
    else
        terminal_->forget();
    terminal_->setVisible(content.terminal.has_value());
}

void ConnectSection::setLinkField(const WindowContent& content) {
    if (const auto& field = content.linkField) {
        if (const auto text = qtText(field->placeholder); text != field_->placeholderText())
            field_->setPlaceholderText(text);
        updateAccessibleName(*field_, field->accessibleName);
        field_->setEnabled(field->enabled);
    } else if (isLinkUsed(content)) {
        field_->clear();
    }
    field_->setVisible(content.linkField.has_value());
}

void ConnectSection::setMessage(const WindowContent& content) {
    message_->setPlainText(content.message.value_or(std::string()));
    setSpinner(*messageSpinner_, content, isBusyWithLink(content));
}

// All that can be done about work under way stands beside what names it.
void ConnectSection::placeButtons(const WindowContent& content) {
    auto* below = static_cast<QBoxLayout*>(layout());
    const bool justCancel = content.buttons.size() == 1 &&
                            content.buttons.front().key == WindowContent::Key::cancelKey && !content.terminal;
    auto* line = !justCancel ? below : isBusyWithLink(content) ? messageLine_ : headingLine_;
    if (line->indexOf(buttons_) < 0) line->addWidget(buttons_);
    if (line == headingLine_)
        buttons_->stackUnder(paragraphs_);
    else
        buttons_->raise();
    align(*headingLine_, line == headingLine_ ? Qt::AlignVCenter : Qt::AlignTop);
    align(*messageLine_, line == messageLine_ ? Qt::AlignVCenter : Qt::AlignTop);
}

}  // namespace tarnik
