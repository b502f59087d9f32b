#include "app/views/Page.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "app/views/Colours.h"
#include "app/views/ConnectSection.h"
#include "app/views/FocusRing.h"
#include "app/views/Grid.h"
#include "app/views/LoginBox.h"
#include "app/views/SwitchesSection.h"
#include "app/views/TitleLine.h"

namespace tarnik {
namespace {

// The grid, in points from the top of the page.
constexpr int titleTop = 16;
constexpr int titleHeight = 24;
constexpr int connectTop = 52;
constexpr int loginTop = 528;
constexpr int bottomMargin = 16;

class Divider : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), lineColour(palette())); }
};

}  // namespace

// Creates the children in their order on the screen, because screen readers read them in this order.
Page::Page(const OnButton& onButton)
    : viewWidth_(Grid::scaled(font(), Grid::pageWidth)),
      title_(new TitleLine(this)),
      connect_(new ConnectSection(onButton, this)),
      divider_(new Divider(this)),
      switches_(new SwitchesSection(onButton, this)),
      login_(new LoginBox(onButton, this)),
      ring_(new FocusRing(this)),
      fade_(*connect_) {}

void Page::setViewWidth(int width) {
    if (std::exchange(viewWidth_, width) != width) arrange();
}

bool Page::setContent(const WindowContent& content) {
    const auto before = controls();
    if (section_ && section_ != content.section) fade_.start();
    section_ = content.section;
    connect_->setContent(content);
    switches_->setContent(content.switches);
    switches_->setVisible(!content.switches.rows.empty());
    divider_->setVisible(!switches_->isHidden());
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
    const auto type = event->type();
    if (type == QEvent::LayoutRequest || type == QEvent::LayoutDirectionChange) arrange();
    // Placed later, because the children get the font after the page.
    if (type == QEvent::FontChange) QCoreApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    return QWidget::event(event);
}

void Page::resizeEvent(QResizeEvent*) {
    arrange();
}

// The terminal breaks its lines only when it is shown.
void Page::showEvent(QShowEvent*) {
    arrange();
}

void Page::arrange() {
    const Grid grid(font(), viewWidth_);
    place(*title_, {0, grid.scaled(titleTop), width(), grid.scaled(titleHeight)});
    title_->arrange(grid);

    int y = grid.scaled(connectTop);
    connect_->resize(width(), connect_->height());
    const int connectHeight = connect_->arrange(grid);
    place(*connect_, {0, y, width(), connectHeight});
    y += connectHeight + Grid::dividerGap;
    const int line = lineWidth(palette());
    place(*divider_, {Grid::margin, y, viewWidth_ - 2 * Grid::margin, line});
    y += Grid::dividerGap;

    const int switchesHeight = switches_->arrange(grid);
    place(*switches_, {0, y, width(), switchesHeight});
    y += switchesHeight;
    if (!login_->isHidden()) y = login_->arrange(grid, std::max(grid.scaled(loginTop), y + Grid::dividerGap));
    setMinimumHeight(std::max(y + bottomMargin, grid.scaled(Grid::pageHeight)));
    ring_->update();
}

}  // namespace tarnik
