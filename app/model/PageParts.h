#pragma once

#include <string>
#include <string_view>

#include "app/model/WindowContent.h"

// The parts that several pages of the window have in common. A text that is passed as std::string_view is
// English and is translated.
namespace tarnik::PageParts {

// Upper bounds, in characters, for untrusted texts.
inline constexpr std::size_t longestLine = 200;
inline constexpr std::size_t longestFailure = 400;
inline constexpr std::size_t longestVersion = 40;

// A page whose heading is also its announcement.
WindowContent pageWith(WindowContent::Section section, std::string_view heading);

void setSymbol(WindowContent& content, std::string_view name, std::string_view accessibleName);
void setBusy(WindowContent& content);
void addParagraph(WindowContent& content, std::string_view text);
// Shows no box for an empty text.
void setTerminal(WindowContent& content, std::string text, std::string_view accessibleName);

WindowContent::Button button(std::string_view title, UserIntent::Kind intent,
                             WindowContent::Key key = WindowContent::Key::none);
WindowContent::Button cancelButton();  // of a pairing

}  // namespace tarnik::PageParts
