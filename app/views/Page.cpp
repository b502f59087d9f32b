#include "app/views/Page.h"

#include <QEvent>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "app/texts/WindowTexts.h"
#include "app/views/Colours.h"
#include "app/views/ConnectSection.h"
#include "app/views/FocusRing.h"
#include "app/views/Grid.h"
#include "app/views/LoginBox.h"
#include "app/views/SwitchesSection.h"
#include "app/views/SymbolIcon.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

// The grid, in points from the top of the page.
constexpr int titleTop = 16;
constexpr int titleHeight = 24;
constexpr int connectTop = 52;
constexpr int loginTop = 528;
constexpr int bottomMargin = 16;

// The line with the application's icon and name.
class TitleLine : public QWidget {
public:
    explicit TitleLine(QWidget* parent)
        : QWidget(parent), icon_(applicationIcon()), name_(new TextLabel(TextLabel::Role::brand, this)) {
        name_->setPlainText(WindowTexts::product);
    }

    void arrange(const Grid& grid) {
        const int line = name_->lineHeight();
        place(*name_, grid.column((height() - line) / 2, line));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect square(Grid::margin, 0, height(), height());
        constexpr double margin = 3.0 / 58;  // of the icon, cropped
        const int crop = static_cast<int>(height() * margin);
        icon_.paint(&painter,
                    QStyle::visualRect(layoutDirection(), rect(), square).adjusted(-crop, -crop, crop, crop));
    }

private:
    const QIcon icon_;
    TextLabel* const name_;
};

class Divider : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), lineColour(palette())); }
};

}  // namespace

// Creates the children in their order on the screen, because screen readers read them in this order.
Page::Page(const OnButton& onButton)
    : title_(new TitleLine(this)),
      connect_(new ConnectSection(onButton, this)),
      divider_(new Divider(this)),
      switches_(new SwitchesSection(onButton, this)),
      login_(new LoginBox(onButton, this)),
      ring_(new FocusRing(this)),
      fade_(*connect_) {}

bool Page::setContent(const WindowContent& content) {
    const auto before = controls();
    if (section_ && section_ != content.section) fade_.start();
    section_ = content.section;
    connect_->setContent(content);
    switches_->setContent(content.switches);
    login_->setBox(content.startAtLogin);
    arrange();
    return controls() != before;
}

std::vector<QWidget*> Page::controls() const {
    auto controls = connect_->controls();
    const auto below = switches_->controls();
    controls.insert(controls.end(), below.begin(), below.end());
    if (!login_->isHidden()) controls.push_back(login_);
    return controls;
}

bool Page::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::LayoutDirectionChange) arrange();
    return QWidget::event(event);
}

void Page::resizeEvent(QResizeEvent*) {
    arrange();
}

// The terminal breaks its lines only when it is shown.
void Page::showEvent(QShowEvent*) {
    arrange();
}

// The scroll bar uses the margin of the page, so the grid has the width of page and bar.
void Page::arrange() {
    const QWidget* view = parentWidget() ? parentWidget()->parentWidget() : this;
    const int full = view ? view->width() : width();
    const Grid grid(font(), full);
    place(*title_, {0, grid.scaled(titleTop), width(), grid.scaled(titleHeight)});
    static_cast<TitleLine*>(title_)->arrange(grid);

    int y = grid.scaled(connectTop);
    connect_->resize(width(), connect_->height());
    const int connectHeight = connect_->arrange(grid);
    place(*connect_, {0, y, width(), connectHeight});
    y += connectHeight + Grid::dividerGap;
    const int line = lineWidth(palette());
    place(*divider_, {Grid::margin, y, full - 2 * Grid::margin, line});
    y += Grid::dividerGap;

    const int switchesHeight = switches_->arrange(grid);
    place(*switches_, {0, y, width(), switchesHeight});
    y += switchesHeight;
    if (!login_->isHidden()) y = login_->arrange(grid, std::max(grid.scaled(loginTop), y + Grid::dividerGap));
    setMinimumHeight(std::max(y + bottomMargin, grid.scaled(Grid::pageHeight)));
    ring_->update();
}

}  // namespace tarnik
