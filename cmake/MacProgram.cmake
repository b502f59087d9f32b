# What the program takes of macOS. Included by app/CMakeLists.txt there, after tarnik_views.
set(TARNIK_SPARKLE "" CACHE PATH "Sparkle.framework, version 2; without it the program has no updates of its own")

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

set(macos ${CMAKE_SOURCE_DIR}/app/platform/macos)
file(GLOB objective CONFIGURE_DEPENDS ${macos}/*.mm)
list(FILTER objective EXCLUDE REGEX "_sparkle\\.mm$")
set_source_files_properties(${objective} ${macos}/MacUpdates_sparkle.mm PROPERTIES
  COMPILE_OPTIONS "-fobjc-arc;-fblocks" SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON)
target_sources(tarnik_views PRIVATE ${objective})
foreach(framework AppKit ApplicationServices CoreFoundation CoreGraphics Foundation Security ServiceManagement)
  target_link_libraries(tarnik_views PRIVATE "-framework ${framework}")
endforeach()

# One of the two: with the framework, or with nothing in its place.
if(TARNIK_SPARKLE)
  if(NOT EXISTS ${TARNIK_SPARKLE}/Headers/Sparkle.h)
    message(FATAL_ERROR "TARNIK_SPARKLE is no Sparkle.framework with headers: ${TARNIK_SPARKLE}")
  endif()
  get_filename_component(sparkleFolder ${TARNIK_SPARKLE} DIRECTORY)
  set_source_files_properties(${macos}/MacUpdates_absent.cpp PROPERTIES HEADER_FILE_ONLY ON)
  set_property(SOURCE ${macos}/MacUpdates_sparkle.mm APPEND PROPERTY COMPILE_OPTIONS -F${sparkleFolder})
  target_sources(tarnik_views PRIVATE ${macos}/MacUpdates_sparkle.mm)
  target_link_libraries(tarnik_views PRIVATE "-F${sparkleFolder}" "-framework Sparkle")
elseif(TARNIK_UPDATE_FEED)
  message(FATAL_ERROR "updates (TARNIK_UPDATE_FEED) need Sparkle: set TARNIK_SPARKLE to its framework")
endif()

# Where the bundle keeps its libraries; packaging/macos/bundle.sh puts them there.
set(CMAKE_BUILD_RPATH ${CMAKE_BUILD_RPATH} "@executable_path/../Frameworks" ${sparkleFolder})
