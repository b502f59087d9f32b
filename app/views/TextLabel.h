#pragma once

#include <QLabel>
#include <array>
#include <string_view>

namespace tarnik {

// A plain-text label. It wraps lines at its width and breaks long words if needed. It ignores all contents
// margins except the top margin.
class TextLabel : public QLabel {
public:
    enum class Role { brand, heading, strong, body, quiet, label };  // `label` is a quiet body

    explicit TextLabel(Role role, QWidget* parent = nullptr);

    // Returns the role's font for a system font.
    static QFont fontOf(Role role, QFont systemFont);

    void setPlainText(std::string_view text);           // an empty text hides the label
    void setColour(QColor (*colour)(const QPalette&));  // instead of the role's colour
    int lineHeight() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent* event) override;  // follows the system font
    void paintEvent(QPaintEvent* event) override;

private:
    // A cached size. Layouts request the same few sizes many times.
    struct Measurement {
        QString text;
        QFont font;
        int width = -1;
        int lineHeight = 0;
        QSizeF size;
    };

    QSizeF measure(int width) const;
    QSize textSize(int width) const;

    const Role role_;
    QFont roleFont_;  // not the widget's font, so that a change of the system font reaches the widget
    QColor (*colour_)(const QPalette&);
    mutable std::array<Measurement, 3> measurements_;  // latest first
};

}  // namespace tarnik
