#include "app/views/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <utility>

namespace tarnik {
namespace {

class DrawingEngine : public QIconEngine {
public:
    DrawingEngine(DrawIcon draw, QList<QSize> sizes) : draw_(std::move(draw)), sizes_(std::move(sizes)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        draw_(*painter, rect, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawingEngine(*this); }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return sizes_; }

private:
    const DrawIcon draw_;
    const QList<QSize> sizes_;
};

}  // namespace

QIcon drawnIcon(DrawIcon draw, const std::vector<int>& sides) {
    QList<QSize> sizes;
    for (const int side : sides) sizes.append(QSize(side, side));
    return QIcon(new DrawingEngine(std::move(draw), std::move(sizes)));  // the icon owns the engine
}

}  // namespace tarnik
