#include "app/views/ConnectSection.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "app/views/FactCard.h"
#include "app/views/Grid.h"
#include "app/views/LinkField.h"
#include "app/views/MessageView.h"
#include "app/views/PageHeader.h"
#include "app/views/QtText.h"
#include "app/views/StepsView.h"
#include "app/views/TerminalBox.h"
#include "app/views/TextLabel.h"
#include "app/views/TroubleLabel.h"

namespace tarnik {
namespace {

using Section = WindowContent::Section;

// The grid, in points from the top of the section.
constexpr int bodyTop = 40;
constexpr int textTop = 76;      // of texts below a drawing or an amount
constexpr int terminalTop = 84;  // one place, whether the text above it has one line or two
constexpr int messageTop = 158;
constexpr int messageLines = 2;
constexpr int buttonsTop = 200;
constexpr int fieldHeight = 32;

// Returns true if the field must be cleared because its link was used. A refused link stays in the field.
bool isLinkUsed(const WindowContent& content) {
    return content.section == Section::pairing || content.section == Section::replaceOffer ||
           content.section == Section::connected;
}

}  // namespace

// Creates the children in their order on the screen, because screen readers use the order of creation.
ConnectSection::ConnectSection(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      header_(new PageHeader(this)),
      amount_(new TextLabel(TextLabel::Role::quiet, this)),
      steps_(new StepsView(this)),
      trouble_(new TroubleLabel([this] { requestLayout(); }, this)),
      card_(new FactCard(this)),
      field_(new LinkField(onButton, this)),
      message_(new MessageView(this)),
      buttons_(new ButtonRow(std::move(onButton), this)) {}

void ConnectSection::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && terminal_) terminal_->setSystemFont(font());
}

void ConnectSection::setContent(const WindowContent& content) {
    header_->setContent(content);
    setBody(content);
    message_->setMessage(content.message);
    buttons_->setButtons(content.buttons);
    // A screen reader that returns to a refused field reads why it was refused.
    const bool isRefused = content.linkField && content.linkField->refused && content.message;
    field_->setAccessibleDescription(isRefused ? qtText(content.message->text) : QString());
}

void ConnectSection::setBody(const WindowContent& content) {
    const auto* download = std::get_if<DownloadProgress>(&content.progress);
    amount_->setPlainText(download ? download->text : std::string());
    if (content.steps) steps_->setSteps(*content.steps);
    steps_->setVisible(content.steps.has_value());
    setParagraphs(content.paragraphs);
    trouble_->setTrouble(content.trouble);
    if (content.card) card_->setCard(*content.card);
    card_->setVisible(content.card.has_value());
    setTerminal(content);
    setLinkField(content);
}

std::vector<QWidget*> ConnectSection::controls() const {
    std::vector<QWidget*> controls;
    if (terminal_ && !terminal_->isHidden()) controls.push_back(terminal_);
    if (!field_->isHidden()) {
        controls.push_back(field_);
        controls.push_back(field_->pasteButton());
    }
    const auto ordered = buttons_->inTabOrder();
    controls.insert(controls.end(), ordered.begin(), ordered.end());
    return controls;
}

// Lets the page place its parts again.
void ConnectSection::requestLayout() {
    QCoreApplication::postEvent(parentWidget(), new QEvent(QEvent::LayoutRequest));
}

void ConnectSection::setParagraphs(const std::vector<std::string>& paragraphs) {
    while (paragraphs_.size() < paragraphs.size()) {
        paragraphs_.push_back(new TextLabel(TextLabel::Role::body, this));
        paragraphs_.back()->stackUnder(trouble_);
    }
    for (std::size_t i = 0; i < paragraphs_.size(); ++i)
        paragraphs_[i]->setPlainText(i < paragraphs.size() ? paragraphs[i] : std::string());
}

void ConnectSection::setTerminal(const WindowContent& content) {
    // Makes the box on first use, because most runs need neither the box nor its font.
    if (!terminal_ && content.terminal) {
        terminal_ = new TerminalBox(this);
        terminal_->stackUnder(field_);
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
    if (content.linkField) {
        field_->setField(*content.linkField);
    } else if (isLinkUsed(content)) {
        field_->clear();
    }
    field_->setVisible(content.linkField.has_value());
}

int ConnectSection::arrange(const Grid& grid) {
    const int headerHeight = header_->arrange(grid);
    place(*header_, {0, 0, parentWidget()->width(), headerHeight});
    const int extra = std::max(0, headerHeight - grid.scaled(bodyTop));  // of a heading of several lines
    const bool hasMessage = !message_->isHidden();
    const int bodyEnd = arrangeBody(grid, grid.scaled(bodyTop) + extra,
                                    grid.scaled(hasMessage ? messageTop : buttonsTop) - Grid::groupGap);

    int buttonsAt = std::max(grid.scaled(buttonsTop), bodyEnd + Grid::groupGap);
    if (hasMessage) {
        const int top = std::max(grid.scaled(messageTop), bodyEnd + Grid::gap);
        const int height = std::max(message_->arrange(grid), messageLines * amount_->lineHeight());
        place(*message_, {0, top, parentWidget()->width(), height});
        buttonsAt = std::max(buttonsAt, top + height + Grid::gap);
    }
    return buttons_->arrange(grid, buttonsAt, hasMessage ? buttonsAt : bodyEnd + Grid::groupGap);
}

// Returns the end of the body. A terminal ends above `bottom`, if two of its lines fit.
int ConnectSection::arrangeBody(const Grid& grid, int top, int bottom) {
    const int extra = top - grid.scaled(bodyTop);
    int y = top;
    int end = top;
    const auto add = [&](QWidget& child, int height) {
        place(child, grid.column(y, height));
        end = y + height;
        y = end + Grid::groupGap;
    };
    if (!amount_->isHidden()) {
        add(*amount_, amount_->lineHeight());
    }
    if (!steps_->isHidden()) add(*steps_, steps_->arrange(grid));
    if (end > top) y = std::max(grid.scaled(textTop) + extra, end + Grid::gap);
    for (auto* paragraph : paragraphs_)
        if (!paragraph->isHidden()) add(*paragraph, paragraph->heightForWidth(grid.columnWidth()));
    if (!trouble_->isHidden()) add(*trouble_, trouble_->heightForWidth(grid.columnWidth()));
    if (!card_->isHidden()) add(*card_, card_->arrange(grid));
    if (terminal_ && !terminal_->isHidden()) {
        if (end > top) y = std::max(y, grid.scaled(terminalTop) + extra);
        terminal_->resize(grid.columnWidth(), terminal_->height());  // wraps its text
        add(*terminal_, terminal_->preferredHeight(bottom - y));
    }
    if (!field_->isHidden()) add(*field_, grid.scaled(fieldHeight));
    return end;
}

}  // namespace tarnik
