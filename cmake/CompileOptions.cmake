# The compile options of this project. Each target of the project links tarnik_options privately.
add_library(tarnik_options INTERFACE)
target_include_directories(tarnik_options INTERFACE ${CMAKE_SOURCE_DIR})

target_compile_options(tarnik_options INTERFACE
  -Wall -Wextra -Wpedantic
  -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wold-style-cast -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wextra-semi
  -Wformat=2 -Wimplicit-fallthrough -Wundef -Wunused
  # Designated initializers leave the other fields at their defaults on purpose.
  -Wno-missing-field-initializers)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(tarnik_options INTERFACE
    -Wduplicated-cond -Wduplicated-branches -Wlogical-op
    # ccache needs this option to cache precompiled headers.
    -fpch-preprocess
    "-DTARNIK_THREAD_ANNOTATION(x)=")
else()
  target_compile_options(tarnik_options INTERFACE
    -Wunreachable-code -Wrange-loop-analysis
    # The annotations of core/foundation/Mutex.h.
    -Wthread-safety "-DTARNIK_THREAD_ANNOTATION(x)=__attribute__((x))"
    # stable_sort of libstdc++ 12 uses a deprecated name of its own. g++ still reports deprecated names in our code.
    -Wno-deprecated-declarations
    # A precompiled header with a timestamp differs in each build and can't be cached.
    "SHELL:-Xclang -fno-pch-timestamp")
endif()

if(TARNIK_WERROR)
  target_compile_options(tarnik_options INTERFACE -Werror)
endif()

# Releases verify the targets of indirect jumps and calls where the processor and the C library support it, and touch each
# page of a large stack frame. Compilers know only the options of their processor. The preset has the options that all
# systems have; app/CMakeLists.txt has those of the linker; tools/check-hardening.sh checks the result.
if(NOT APPLE)
  include(CheckCXXCompilerFlag)
  foreach(flag fcf-protection=full mbranch-protection=standard fstack-clash-protection)
    string(MAKE_C_IDENTIFIER "TARNIK_HAS_${flag}" known)
    check_cxx_compiler_flag(-${flag} ${known})
    if(${known})
      add_compile_options($<$<CONFIG:Release>:-${flag}>)
    endif()
  endforeach()
endif()

# The sanitizers apply to all targets, precompiled headers and links.
if(TARNIK_SANITIZERS)
  add_compile_options(-fsanitize=${TARNIK_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TARNIK_SANITIZERS})
endif()

# The standard headers that most sources need. They are precompiled for each library. Third-party headers are left out,
# because each belongs to one source of core/foundation.
set(TARNIK_STANDARD_HEADERS
  <algorithm> <array> <atomic> <cerrno> <chrono> <condition_variable> <cstddef> <cstdint> <cstdlib> <cstring>
  <expected> <functional> <map> <memory> <mutex> <optional> <span> <string> <string_view> <thread> <utility>
  <variant> <vector>)
