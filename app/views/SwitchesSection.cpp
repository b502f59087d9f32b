#include "app/views/SwitchesSection.h"

#include <QVBoxLayout>

#include "app/views/SwitchRowView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr int textGap = 4;
constexpr int listGap = 14;
constexpr int rowGap = 12;

}  // namespace

SwitchesSection::SwitchesSection(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      onButton_(std::move(onButton)),
      heading_(new TextLabel(TextLabel::Look::strong, this)),
      text_(new TextLabel(TextLabel::Look::quiet, this)),
      list_(new QWidget(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(textGap);
    layout->addWidget(heading_);
    layout->addWidget(text_);
    layout->addSpacing(listGap - textGap);
    layout->addWidget(list_);

    auto* listLayout = new QVBoxLayout(list_);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->setSpacing(rowGap);
}

bool SwitchesSection::setContent(const WindowContent::Switches& content) {
    const auto before = controls();
    heading_->setPlainText(content.heading);
    text_->setPlainText(content.text);
    while (rows_.size() < content.rows.size()) {
        rows_.push_back(new SwitchRowView(onButton_, list_));
        list_->layout()->addWidget(rows_.back());
    }
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (i < content.rows.size()) rows_[i]->setRow(content.rows[i]);
        rows_[i]->setVisible(i < content.rows.size());
    }
    return controls() != before;
}

std::vector<QWidget*> SwitchesSection::controls() const {
    std::vector<QWidget*> controls;
    for (const auto* row : rows_)
        if (!row->button()->isHidden()) controls.push_back(row->button());
    return controls;
}

}  // namespace tarnik
