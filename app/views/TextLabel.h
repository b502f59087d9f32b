#pragma once

#include <QLabel>
#include <string_view>

namespace tarnik {

// A text of the window: plain, whatever it contains, wrapped to the width it gets, also within a long word.
// Of its contents margins the upper one counts.
class TextLabel : public QLabel {
public:
    enum class Look { brand, heading, strong, body, quiet };

    explicit TextLabel(Look look, QWidget* parent = nullptr);

    void setPlainText(std::string_view text);  // hides the label while it is empty
    int lineHeight() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSize textSize(int width) const;

    const Look look_;
};

}  // namespace tarnik
