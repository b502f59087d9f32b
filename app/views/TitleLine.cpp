#include "app/views/TitleLine.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QPainter>

#include "app/model/WindowTexts.h"
#include "app/views/SymbolIcon.h"
#include "app/views/TextLabel.h"

namespace tarnik {
namespace {

constexpr int tileSide = 30;

class Tile : public QWidget {
public:
    explicit Tile(QWidget* parent) : QWidget(parent), icon_(applicationIcon()) {
        setFixedSize(tileSide, tileSide);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon_.paint(&painter, rect().adjusted(-1, -1, 1, 1));  // without its margin
    }

private:
    const QIcon icon_;
};

}  // namespace

TitleLine::TitleLine(QWidget* parent) : QWidget(parent) {
    auto* name = new TextLabel(TextLabel::Role::brand, this);
    name->setPlainText(WindowTexts::product);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(new Tile(this));
    layout->addWidget(name, 1, Qt::AlignVCenter);
}

}  // namespace tarnik
