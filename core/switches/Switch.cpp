#include "core/switches/Switch.h"

namespace tarnik {

namespace {

struct Texts {
    std::string_view rawValue, title, why, settingsURL;
};

constexpr Texts accessibility{
    .rawValue = "accessibility",
    .title = "Accessibility",
    .why = "Lets tarnik click and type in your apps, in the background.",
    .settingsURL = "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"};

constexpr Texts screenRecording{
    .rawValue = "screenRecording",
    .title = "Screen Recording",
    .why = "Lets tarnik see the window it's working in.",
    .settingsURL = "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"};

const Texts& texts(Switch which) {
    return which == Switch::accessibility ? accessibility : screenRecording;
}

}  // namespace

std::string_view rawValue(Switch which) {
    return texts(which).rawValue;
}

std::string_view title(Switch which) {
    return texts(which).title;
}

std::string_view why(Switch which) {
    return texts(which).why;
}

std::string_view settingsURL(Switch which) {
    return texts(which).settingsURL;
}

}  // namespace tarnik
