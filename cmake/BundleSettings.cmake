# Settings that the build writes to the Info.plist of its bundle. An empty setting is left out.
set(TARNIK_WEB_ORIGIN "" CACHE STRING "The service's website, instead of TARNIK_DEFAULT_WEB_ORIGIN")
set(TARNIK_NODE_RELEASE_BASE "" CACHE STRING "The address of the helper's signed releases")
set(TARNIK_NODE_RELEASE_PUBLIC_KEY "" CACHE STRING "The public key of those releases, base64url")
set(TARNIK_NODE_MIN_VERSION "" CACHE STRING "The oldest release of the helper that may be installed")
set(TARNIK_DRIVER "" CACHE FILEPATH "The desktop driver's executable, which goes into the bundle as cua-driver")

if(NOT TARNIK_WEB_ORIGIN MATCHES "^(https?://[A-Za-z0-9.-]+(:[0-9]+)?/?)?$")
  message(FATAL_ERROR "TARNIK_WEB_ORIGIN is not a web origin: ${TARNIK_WEB_ORIGIN}")
endif()
if(NOT TARNIK_NODE_RELEASE_BASE MATCHES "^(https?://[^ ]+)?$")
  message(FATAL_ERROR "TARNIK_NODE_RELEASE_BASE is not an address: ${TARNIK_NODE_RELEASE_BASE}")
endif()
if(NOT TARNIK_NODE_RELEASE_PUBLIC_KEY MATCHES "^([A-Za-z0-9_-]+=?)?$")
  message(FATAL_ERROR "TARNIK_NODE_RELEASE_PUBLIC_KEY is not base64url: ${TARNIK_NODE_RELEASE_PUBLIC_KEY}")
endif()
if(TARNIK_DRIVER AND NOT EXISTS "${TARNIK_DRIVER}")
  message(FATAL_ERROR "TARNIK_DRIVER is not a file: ${TARNIK_DRIVER}")
endif()

# tarnik_plist_entries(<out> <key> <variable> [<key> <variable>...])
#
# Sets `out` to the lines of a property list with these keys and the values of the variables. Empty values are left out.
function(tarnik_plist_entries out)
  set(lines "")
  set(words ${ARGN})
  while(words)
    list(POP_FRONT words key variable)
    set(text "${${variable}}")
    if(text STREQUAL "")
      continue()
    endif()
    string(REPLACE "&" "&amp;" text "${text}")
    string(REPLACE "<" "&lt;" text "${text}")
    string(REPLACE ">" "&gt;" text "${text}")
    string(APPEND lines "  <key>${key}</key>\n  <string>${text}</string>\n")
  endwhile()
  set(${out} "${lines}" PARENT_SCOPE)
endfunction()

tarnik_plist_entries(TARNIK_PLIST_SETTINGS
  TKWebOrigin TARNIK_WEB_ORIGIN
  TKNodeReleaseBase TARNIK_NODE_RELEASE_BASE
  TKNodeReleasePublicKey TARNIK_NODE_RELEASE_PUBLIC_KEY
  TKNodeMinVersion TARNIK_NODE_MIN_VERSION)
