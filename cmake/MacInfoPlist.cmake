# Makes the Info.plist of the macOS bundle. Builds on every system make the file, so that the tests can read it. If run
# as a script (cmake -D... -P cmake/MacInfoPlist.cmake), writes the Info.plist to TARNIK_INFO_PLIST.
include(${CMAKE_CURRENT_LIST_DIR}/BundleSettings.cmake)

set(TARNIK_OLDEST_MACOS "13.0" CACHE STRING "The oldest supported macOS")
set(TARNIK_UPDATE_FEED "" CACHE STRING "The address of Sparkle's update feed")
set(TARNIK_UPDATE_PUBLIC_KEY "" CACHE STRING "The public key of the updates, base64")

if(NOT TARNIK_UPDATE_FEED MATCHES "^(https://[^ ]+)?$")
  message(FATAL_ERROR "TARNIK_UPDATE_FEED is not an https address: ${TARNIK_UPDATE_FEED}")
endif()
# An Ed25519 key has 32 bytes.
string(LENGTH "${TARNIK_UPDATE_PUBLIC_KEY}" keyLength)
if(NOT TARNIK_UPDATE_PUBLIC_KEY MATCHES "^([A-Za-z0-9+/]+=)?$" OR NOT keyLength MATCHES "^(0|44)$")
  message(FATAL_ERROR "TARNIK_UPDATE_PUBLIC_KEY is not an Ed25519 key in base64: ${TARNIK_UPDATE_PUBLIC_KEY}")
endif()
if((TARNIK_UPDATE_FEED AND NOT TARNIK_UPDATE_PUBLIC_KEY) OR (TARNIK_UPDATE_PUBLIC_KEY AND NOT TARNIK_UPDATE_FEED))
  message(FATAL_ERROR "TARNIK_UPDATE_FEED and TARNIK_UPDATE_PUBLIC_KEY must be set together")
endif()

tarnik_plist_entries(TARNIK_PLIST_UPDATES
  SUFeedURL TARNIK_UPDATE_FEED
  SUPublicEDKey TARNIK_UPDATE_PUBLIC_KEY)

if(NOT CMAKE_SCRIPT_MODE_FILE)
  set(TARNIK_INFO_PLIST ${CMAKE_BINARY_DIR}/macos/Info.plist)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/../packaging/macos/Info.plist.in ${TARNIK_INFO_PLIST} @ONLY)
