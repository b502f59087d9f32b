#include "app/views/ConnectSection.h"

#include <QVBoxLayout>

#include "app/views/LinkField.h"
#include "app/views/PageHeader.h"
#include "app/views/QtText.h"
#include "app/views/TerminalBox.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;

constexpr int blockGap = 12;
constexpr int paragraphGap = 8;
constexpr int fieldHeight = 36;
constexpr int fieldPadding = 5;        // beside the typed text
constexpr int maxLinkLength = 65'536;  // no accepted link is longer

QVBoxLayout* makeLayout(int spacing, QWidget* parent = nullptr) {
    auto* layout = new QVBoxLayout(parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return layout;
}

// Returns true if the field must be cleared because its link was used. A refused link stays in the field.
bool isLinkUsed(const WindowContent& content) {
    return content.section == Section::pairing || content.section == Section::replaceOffer ||
           content.section == Section::connected;
}

}  // namespace

// Creates the children in their order on the screen, because screen readers use the order of creation.
ConnectSection::ConnectSection(int width, OnButton onButton, QWidget* parent)
    : QWidget(parent),
      header_(new PageHeader(this)),
      amount_(new TextLabel(TextLabel::Role::quiet, this)),
      paragraphs_(new QWidget(this)),
      field_(new LinkField(this)),
      message_(new TextLabel(TextLabel::Role::body, this)),
      buttons_(new ButtonRow(width, std::move(onButton), this)),
      body_(makeLayout(blockGap)) {
    makeLayout(paragraphGap, paragraphs_);
    field_->setMinimumHeight(fieldHeight);
    field_->setTextMargins(fieldPadding, 0, fieldPadding, 0);
    field_->setMaxLength(maxLinkLength);

    auto* layout = makeLayout(0, this);
    layout->addWidget(header_);
    layout->addLayout(body_, 1);
    const std::initializer_list<QWidget*> below{amount_, paragraphs_, field_, message_, buttons_};
    for (auto* child : below) body_->addWidget(child);
}

bool ConnectSection::setContent(const WindowContent& content) {
    const auto before = controls();
    header_->setContent(content);
    const auto* download = std::get_if<DownloadProgress>(&content.progress);
    amount_->setPlainText(download ? download->text : std::string());
    setParagraphs(content.paragraphs);
    setTerminal(content);
    setLinkField(content);
    message_->setPlainText(content.message ? content.message->text : std::string());
    buttons_->setButtons(content.buttons);
    return controls() != before;
}

bool ConnectSection::takesExtraHeight() const {
    return terminal_ && !terminal_->isHidden();
}

std::vector<QWidget*> ConnectSection::controls() const {
    std::vector<QWidget*> controls;
    if (terminal_ && !terminal_->isHidden()) controls.push_back(terminal_);
    if (!field_->isHidden()) controls.push_back(field_);
    controls.insert(controls.end(), buttons_->buttons().begin(), buttons_->buttons().end());
    return controls;
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

void ConnectSection::setTerminal(const WindowContent& content) {
    // Makes the box on first use, because most runs need neither the box nor its font.
    if (!terminal_ && content.terminal) {
        terminal_ = new TerminalBox(this);
        terminal_->stackUnder(field_);
        body_->insertWidget(body_->indexOf(field_), terminal_, 1);
    }
    if (!terminal_) return;
    if (content.terminal) {
        terminal_->setTerminal(*content.terminal);
    } else {
        terminal_->reset();
    }
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

}  // namespace tarnik
