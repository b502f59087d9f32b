#pragma once

#include <string>
#include <vector>

namespace tarnik {

// Removes a picture of the screen that was made for us a moment ago: a regular file of this user's, below one
// of the folders, that was written within the last ten minutes. Whatever else is there stays.
void removeScreenshot(const std::string& path, const std::vector<std::string>& folders);

}  // namespace tarnik
