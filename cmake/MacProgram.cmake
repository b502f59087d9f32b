# The macOS parts of the build. Include this on macOS only, before the folders with targets are added.
set(TARNIK_SPARKLE "" CACHE PATH "Sparkle.framework, version 2; without it the program doesn't update itself")
if(TARNIK_SPARKLE AND NOT EXISTS ${TARNIK_SPARKLE}/Headers/Sparkle.h)
  message(FATAL_ERROR "TARNIK_SPARKLE is not a Sparkle.framework with headers: ${TARNIK_SPARKLE}")
endif()
if(TARNIK_UPDATE_FEED AND NOT TARNIK_SPARKLE)
  message(FATAL_ERROR "updates (TARNIK_UPDATE_FEED) need Sparkle: set TARNIK_SPARKLE to its framework")
endif()

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
foreach(config DEBUG RELEASE)
  set(CMAKE_OBJCXX_FLAGS_${config} "${CMAKE_CXX_FLAGS_${config}}")
endforeach()
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()

# tarnik_mac_program(<target>): adds the Objective-C++ sources and the frameworks to the target, and Sparkle if
# TARNIK_SPARKLE is set. The target must already have the .cpp files.
function(tarnik_mac_program target)
  set(macos ${CMAKE_CURRENT_SOURCE_DIR}/platform/macos)
  file(GLOB sources CONFIGURE_DEPENDS ${macos}/*.mm)
  if(TARNIK_SPARKLE)
    set_source_files_properties(${macos}/MacUpdates_absent.cpp PROPERTIES HEADER_FILE_ONLY ON)
    cmake_path(GET TARNIK_SPARKLE PARENT_PATH sparkleFolder)
    # Sparkle's folder counts as a system folder, so our warnings don't apply to its headers.
    target_compile_options(${target} PRIVATE -iframework${sparkleFolder})
    target_link_options(${target} INTERFACE -F${sparkleFolder} "LINKER:-rpath,${sparkleFolder}")
    target_link_libraries(${target} PRIVATE "-framework Sparkle")
  else()
    list(FILTER sources EXCLUDE REGEX "_sparkle\\.mm$")
  endif()
  set_source_files_properties(${sources} PROPERTIES
    COMPILE_OPTIONS -fobjc-arc SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON)
  target_sources(${target} PRIVATE ${sources})
  foreach(framework AppKit ApplicationServices CoreFoundation CoreGraphics Foundation Security ServiceManagement
          UserNotifications)
    target_link_libraries(${target} PRIVATE "-framework ${framework}")
  endforeach()
  # packaging/macos/bundle.sh copies the libraries to this folder.
  target_link_options(${target} INTERFACE "LINKER:-rpath,@executable_path/../Frameworks")
endfunction()
