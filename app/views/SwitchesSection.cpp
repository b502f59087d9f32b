#include "app/views/SwitchesSection.h"

#include <algorithm>

#include "app/views/Grid.h"
#include "app/views/SwitchRowView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

// In points, from the top of the section.
constexpr int headingTop = 1;
constexpr int lineGap = 1;  // between heading and text
constexpr int rowsTop = 61;
constexpr int rowPitch = 64;
constexpr int rowGap = 12;  // at least

}  // namespace

SwitchesSection::SwitchesSection(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      onButton_(std::move(onButton)),
      heading_(new TextLabel(TextLabel::Role::strong, this)),
      text_(new TextLabel(TextLabel::Role::quiet, this)) {}

void SwitchesSection::setContent(const WindowContent::Switches& content) {
    heading_->setPlainText(content.heading);
    text_->setPlainText(content.text);
    while (rows_.size() < content.rows.size()) rows_.push_back(new SwitchRowView(onButton_, this));
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (i < content.rows.size()) rows_[i]->setRow(content.rows[i]);
        rows_[i]->setVisible(i < content.rows.size());
    }
}

int SwitchesSection::arrange(const Grid& grid) {
    const int width = parentWidget()->width();
    resize(width, height());
    int y = grid.scaled(headingTop);
    for (auto* label : {heading_, text_}) {
        const int height = label->heightForWidth(grid.columnWidth());
        place(*label, grid.column(y, height));
        y += height + grid.scaled(lineGap);
    }
    int top = std::max(grid.scaled(rowsTop), y + Grid::groupGap);
    int end = y;
    for (auto* row : rows_) {
        const int height = row->arrange(grid);
        place(*row, {0, top, width, height});
        end = top + height;
        top = std::max(top + grid.scaled(rowPitch), end + rowGap);
    }
    return end;
}

std::vector<QWidget*> SwitchesSection::controls() const {
    std::vector<QWidget*> controls;
    for (const auto* row : rows_)
        if (!row->button()->isHidden()) controls.push_back(row->button());
    return controls;
}

}  // namespace tarnik
