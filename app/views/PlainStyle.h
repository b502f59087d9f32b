#pragma once

#include <QProxyStyle>

#include "app/views/Colours.h"

namespace tarnik {

// A flat widget style with rounded controls and a focus ring, for desktops that leave the style to the
// program. All colours are from the palette. The application owns the style.
class PlainStyle : public QProxyStyle {
public:
    PlainStyle();

    void setMotion(Motion motion) { motion_ = motion; }

    QPalette standardPalette() const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;

private:
    Motion motion_ = Motion::usual;
};

// Sets the application's style, its motion and its palette.
void applyPlainStyle(Appearance appearance, const PaletteOptions& options = {},
                     Motion motion = Motion::usual);

}  // namespace tarnik
