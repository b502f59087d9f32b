#pragma once

#include <QWidget>

namespace tarnik {

// The application's icon and name, at the top of the window.
class TitleLine : public QWidget {
public:
    explicit TitleLine(QWidget* parent);
};

}  // namespace tarnik
