# tarnik_options: what every target of ours compiles with. Linked privately by each of them.
add_library(tarnik_options INTERFACE)
target_include_directories(tarnik_options INTERFACE ${CMAKE_SOURCE_DIR})

target_compile_options(tarnik_options INTERFACE
  -Wall -Wextra -Wpedantic
  -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi
  -Wformat=2 -Wimplicit-fallthrough -Wundef -Wunused
  # Records of options are filled by field name, and leave the rest at its default on purpose.
  -Wno-missing-field-initializers)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tarnik_options INTERFACE
    -Wduplicated-cond -Wduplicated-branches -Wlogical-op
    # ccache needs it to look into precompiled headers.
    -fpch-preprocess
    "-DTARNIK_THREAD_ANNOTATION(x)=")
else()
  target_compile_options(tarnik_options INTERFACE
    -Wunreachable-code -Wrange-loop-analysis
    # The annotations of core/foundation/Mutex.h.
    -Wthread-safety "-DTARNIK_THREAD_ANNOTATION(x)=__attribute__((x))"
    # The stable_sort of libstdc++ 12 uses a name that it deprecates itself; g++ still looks at ours.
    -Wno-deprecated-declarations
    # A precompiled header with a time inside is never the same twice, and so never cached.
    "SHELL:-Xclang -fno-pch-timestamp")
endif()

if(TARNIK_WERROR)
  target_compile_options(tarnik_options INTERFACE -Werror)
endif()

# The sanitizers apply to the whole build, precompiled headers and links alike.
if(TARNIK_SANITIZERS)
  add_compile_options(-fsanitize=${TARNIK_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TARNIK_SANITIZERS})
endif()

# The standard headers that nearly every source needs, compiled once and shared by all targets that
# link tarnik_options. Third-party headers stay out: each belongs to one source of core/foundation.
set(TARNIK_STANDARD_HEADERS
  <algorithm> <array> <atomic> <cerrno> <chrono> <condition_variable> <cstddef> <cstdint> <cstdlib> <cstring>
  <expected> <functional> <map> <memory> <mutex> <optional> <span> <string> <string_view> <thread> <utility>
  <variant> <vector>)
