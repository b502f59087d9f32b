#pragma once

namespace tarnik {

// Whether this program was built for its developers. The build picks the source.
bool isDevelopmentBuild();

}  // namespace tarnik
