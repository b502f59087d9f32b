#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "app/model/WindowContent.h"

namespace tarnik {

// The contents of the window: draws a WindowContent from top to bottom and passes on what is clicked or
// typed. Main thread. What doesn't change from one content to the next keeps its widgets, with focus,
// selection and scrolling.
class MainView : public QWidget {
public:
    // `pasted` is what stands in the link field at that moment.
    using OnIntent = std::function<void(const WindowIntent& intent, const std::string& pasted)>;

    MainView(const WindowContent& content, OnIntent onIntent);

    void setContent(const WindowContent& content);
};

}  // namespace tarnik
