#include "app/views/PageHeader.h"

#include <QVBoxLayout>

#include "app/views/ProgressBar.h"
#include "app/views/QtText.h"
#include "app/views/SymbolView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr int symbolSide = 21;
constexpr int symbolGap = 10;

}  // namespace

PageHeader::PageHeader(QWidget* parent)
    : QWidget(parent),
      heading_(new TextLabel(TextLabel::Role::heading, this)),
      symbol_(new SymbolView(symbolSide, heading_->lineHeight(), this)),
      progress_(new ProgressBar(gapBelow, this)) {
    // Screen readers read the children from back to front: the symbol, the heading, the progress.
    symbol_->lower();

    auto* line = new QHBoxLayout;
    line->setSpacing(symbolGap);
    line->addWidget(symbol_, 0, Qt::AlignTop);
    line->addWidget(heading_, 1, Qt::AlignTop);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(line);
    layout->addWidget(progress_);
}

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
    setVisible(content.symbol || !content.heading.empty());
}

}  // namespace tarnik
