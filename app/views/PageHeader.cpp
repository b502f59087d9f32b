#include "app/views/PageHeader.h"

#include <algorithm>

#include "app/views/Grid.h"
#include "app/views/ProgressBar.h"
#include "app/views/QtText.h"
#include "app/views/SymbolView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

// In points.
constexpr int symbolSide = 20;
constexpr int lineHeight = 24;
constexpr int progressGap = 6;  // above and below
constexpr int progressHeight = 4;

}  // namespace

// Creates the children in the order in which screen readers read them.
PageHeader::PageHeader(QWidget* parent)
    : QWidget(parent),
      symbol_(new SymbolView(this)),
      heading_(new TextLabel(TextLabel::Role::heading, this)),
      progress_(new ProgressBar(this)) {}

void PageHeader::setContent(const WindowContent& content) {
    if (content.symbol) symbol_->setSymbol(*content.symbol);
    symbol_->setVisible(content.symbol.has_value());
    heading_->setPlainText(content.heading);

    const auto* download = std::get_if<DownloadProgress>(&content.progress);
    const bool isBusy = std::holds_alternative<WindowContent::Busy>(content.progress);
    if (download || isBusy) {
        updateAccessibleName(*progress_, content.progressAccessibleName);
        progress_->setProgress(download ? *download : DownloadProgress{});
    }
    progress_->setVisible(download || isBusy);
}

int PageHeader::arrange(const Grid& grid) {
    resize(parentWidget()->width(), height());
    const int line = std::max(grid.scaled(lineHeight), heading_->lineHeight());
    const int text = std::max(line, heading_->heightForWidth(grid.columnWidth()));
    place(*symbol_, grid.symbol(line / 2, grid.scaled(symbolSide)));
    place(*heading_, grid.column(0, text));
    const int bar = grid.scaled(progressHeight);
    place(*progress_, grid.column(text + progressGap, bar));
    return text + bar + 2 * progressGap;
}

}  // namespace tarnik
