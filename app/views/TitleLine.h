#pragma once

#include <QIcon>
#include <QWidget>

namespace tarnik {

class Grid;
class TextLabel;

// The line with the application's icon and name.
class TitleLine : public QWidget {
public:
    explicit TitleLine(QWidget* parent);

    // Places the name for the widget's height.
    void arrange(const Grid& grid);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const QIcon icon_;
    TextLabel* const name_;  // a child
};

}  // namespace tarnik
