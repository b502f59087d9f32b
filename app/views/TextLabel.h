#pragma once

#include <QLabel>
#include <array>
#include <string_view>

namespace tarnik {

// A text of the window: plain, whatever it contains, wrapped to the width it gets, also within a long word.
// Of its contents margins the upper one counts.
class TextLabel : public QLabel {
public:
    enum class Role { brand, heading, strong, body, quiet };

    explicit TextLabel(Role role, QWidget* parent = nullptr);

    void setPlainText(std::string_view text);  // hides the label while it is empty
    int lineHeight() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    // Layouts ask for the same few sizes many times.
    struct Measured {
        QString text;
        QFont font;
        int width = -1;
        QSizeF size;
    };

    QSizeF measure(int width) const;
    QSize textSize(int width) const;

    const Role role_;
    mutable std::array<Measured, 3> measured_;  // the latest first
};

}  // namespace tarnik
