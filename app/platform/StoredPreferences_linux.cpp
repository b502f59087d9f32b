#include "app/platform/StoredPreferences.h"

#include "app/platform/DefaultsFile.h"

namespace tarnik {

UserDefaults storedPreferences(const SystemFolders& folders, const SystemLog& log) {
    return DefaultsFile::operations(DefaultsFile::pathIn(folders), log);
}

}  // namespace tarnik
