#pragma once

#include <QLabel>
#include <string_view>

namespace tarnik {

// Makes screen readers speak a text without moving the focus. The widget is one pixel in size and paints
// nothing.
class Announcer : public QLabel {
public:
    explicit Announcer(QWidget* parent);

    void announce(std::string_view news);
};

}  // namespace tarnik
