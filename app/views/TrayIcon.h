#pragma once

#include <optional>
#include <string>

#include "app/model/TrayStatus.h"
#include "app/platform/NativeStatusItem.h"

class QIcon;

namespace tarnik {

// Returns the picture of the status item: the letter with a dot, a ring or an exclamation mark, in one
// colour. The icon is a mask, so some systems replace its colour. The original colour is visible on light and
// dark panels.
//
// `connectedImage` is the image file that replaces the drawing of TrayStatus::connected. If it is set but the
// file does not exist, that status shows the short title.
QIcon trayIcon(TrayStatus status, const std::optional<std::string>& connectedImage = std::nullopt);

// Returns the same picture for a status item that the system shows. Returns an empty picture if the image
// file of the status doesn't exist.
NativeStatusItem::Picture statusPicture(TrayStatus status,
                                        const std::optional<std::string>& connectedImage = std::nullopt);

}  // namespace tarnik
