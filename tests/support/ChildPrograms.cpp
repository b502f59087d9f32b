#include "tests/support/ChildPrograms.h"

namespace tarnik {

std::string childProgram(const std::string& name) {
    return TARNIK_CHILDREN_DIR "/" + name;
}

}  // namespace tarnik
