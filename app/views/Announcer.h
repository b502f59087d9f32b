#pragma once

#include <QLabel>
#include <string_view>

namespace tarnik {

// Has a screen reader say what has happened, whatever has the keyboard. Takes no room in the window.
class Announcer : public QLabel {
public:
    explicit Announcer(QWidget* parent);

    void announce(std::string_view news);
};

}  // namespace tarnik
