#include "app/views/SwitchesSection.h"

#include <QPainter>
#include <QVBoxLayout>

#include "app/views/Colours.h"
#include "app/views/SwitchRowView.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr int textGap = 4;
constexpr int listGap = 12;
constexpr int rowMargin = 9;  // above and below
constexpr int sideMargin = 12;
constexpr double radius = 10;

// The rows on their own background, with lines between them.
class RowList : public QWidget {
public:
    explicit RowList(QWidget* parent) : QWidget(parent) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(sideMargin, rowMargin, sideMargin, rowMargin);
        layout->setSpacing(2 * rowMargin + 1);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QColor line = lineColour(palette());
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(line);
        painter.setBrush(palette().base());
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        painter.setRenderHint(QPainter::Antialiasing, false);
        for (int i = 1; i < layout()->count(); ++i) {
            const QRect row = layout()->itemAt(i)->geometry();
            painter.fillRect(QRect(row.left(), row.top() - rowMargin - 1, row.width(), 1), line);
        }
    }
};

}  // namespace

SwitchesSection::SwitchesSection(OnButton onButton, QWidget* parent)
    : QWidget(parent),
      onButton_(std::move(onButton)),
      heading_(new TextLabel(TextLabel::Role::strong, this)),
      text_(new TextLabel(TextLabel::Role::quiet, this)),
      list_(new RowList(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(textGap);
    layout->addWidget(heading_);
    layout->addWidget(text_);
    layout->addSpacing(listGap - textGap);
    layout->addWidget(list_);
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
