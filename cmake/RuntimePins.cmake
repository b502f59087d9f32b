# The Node.js runtimes of platforms that have no row in core/node/NodeRuntime.cpp. `./dev release pins` prints these
# settings. Sets TARNIK_PLIST_RUNTIME to the property list entries of the runtime for TARNIK_HOST_PLATFORMS; they are empty
# if no runtime is set for it.
#
# Run as a script (cmake -D... -P cmake/RuntimePins.cmake), checks the settings and prints the entries.
cmake_policy(SET CMP0057 NEW)  # a script has no policies of a project
include(${CMAKE_CURRENT_LIST_DIR}/PlistEntries.cmake)
set(TARNIK_NODE_RUNTIMES "" CACHE STRING
  "The runtimes for Linux: PLATFORM=ARCHIVE=SHA256, separated by commas")
set(TARNIK_NODE_RUNTIME_BASE "" CACHE STRING
  "The address of the folder with these archives, instead of the Node.js project's server")

# Sets `out` to the value of this constant in the header of the fixed pins.
function(tarnik_pinned out name)
  file(STRINGS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../core/node/NodeRuntime.h line
    REGEX "constexpr std::string_view ${name} = ")
  if(NOT line MATCHES "\"([^\"]+)\"")
    message(FATAL_ERROR "core/node/NodeRuntime.h has no ${name}")
  endif()
  set(${out} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()
tarnik_pinned(pinnedVersion version)
tarnik_pinned(pinnedBase distBase)

if(NOT TARNIK_NODE_RUNTIME_BASE MATCHES "^(https?://[^ ]+/)?$")
  message(FATAL_ERROR "TARNIK_NODE_RUNTIME_BASE is not an address that ends in a slash: ${TARNIK_NODE_RUNTIME_BASE}")
endif()
if(TARNIK_NODE_RUNTIME_BASE AND NOT TARNIK_NODE_RUNTIMES)
  message(FATAL_ERROR "TARNIK_NODE_RUNTIME_BASE is set without TARNIK_NODE_RUNTIMES")
endif()

set(known linux-x64 linux-arm64)
set(seen "")
set(TARNIK_PLIST_RUNTIME "")
string(REPLACE "," ";" pins "${TARNIK_NODE_RUNTIMES}")
foreach(pin IN LISTS pins)
  if(NOT pin MATCHES "^([^=]*)=([^=]*)=([^=]*)$")
    message(FATAL_ERROR "TARNIK_NODE_RUNTIMES must have PLATFORM=ARCHIVE=SHA256 instead of: ${pin}")
  endif()
  set(runtimePlatform ${CMAKE_MATCH_1})
  set(runtimeFile ${CMAKE_MATCH_2})
  set(runtimeDigest ${CMAKE_MATCH_3})
  if(NOT runtimePlatform IN_LIST known)
    message(FATAL_ERROR "TARNIK_NODE_RUNTIMES can't set the runtime of ${runtimePlatform}, only of: ${known}")
  endif()
  if(runtimePlatform IN_LIST seen)
    message(FATAL_ERROR "TARNIK_NODE_RUNTIMES has two runtimes for ${runtimePlatform}")
  endif()
  list(APPEND seen ${runtimePlatform})
  if(NOT runtimeFile MATCHES "^node-(v[0-9]+\\.[0-9]+\\.[0-9]+)-${runtimePlatform}\\.tar\\.gz$")
    message(FATAL_ERROR
      "TARNIK_NODE_RUNTIMES must have an archive such as node-${pinnedVersion}-${runtimePlatform}.tar.gz instead of: ${runtimeFile}")
  endif()
  set(runtimeVersion ${CMAKE_MATCH_1})
  string(LENGTH "${runtimeDigest}" digits)
  if(NOT digits EQUAL 64 OR NOT runtimeDigest MATCHES "^[0-9a-f]+$")
    message(FATAL_ERROR "TARNIK_NODE_RUNTIMES must have 64 lower-case hexadecimal digits instead of: ${runtimeDigest}")
  endif()
  set(runtimeBase ${TARNIK_NODE_RUNTIME_BASE})
  if(NOT runtimeBase)
    set(runtimeBase ${pinnedBase})
    if(NOT runtimeVersion STREQUAL pinnedVersion)
      message(FATAL_ERROR
        "${runtimeFile} isn't in the folder of ${pinnedVersion} on the Node.js project's server; set TARNIK_NODE_RUNTIME_BASE")
    endif()
  endif()
  if(runtimePlatform IN_LIST TARNIK_HOST_PLATFORMS)
    tarnik_plist_entries(TARNIK_PLIST_RUNTIME
      TKNodeRuntimePlatform runtimePlatform
      TKNodeRuntimeVersion runtimeVersion
      TKNodeRuntimeBase runtimeBase
      TKNodeRuntimeFile runtimeFile
      TKNodeRuntimeSHA256 runtimeDigest)
  endif()
endforeach()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  message("${TARNIK_PLIST_RUNTIME}")
endif()
