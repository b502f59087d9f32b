# The Info.plist of the macOS bundle. Made on every system, so that the tests read the one that ships; as a script
# (cmake -D... -P cmake/MacInfoPlist.cmake) it writes the file TARNIK_INFO_PLIST.
include(${CMAKE_CURRENT_LIST_DIR}/BundleSettings.cmake)

set(TARNIK_OLDEST_MACOS "13.0" CACHE STRING "The oldest macOS that the program starts on")
set(TARNIK_UPDATE_FEED "" CACHE STRING "Where new versions of the application are announced, for Sparkle")
set(TARNIK_UPDATE_PUBLIC_KEY "" CACHE STRING "The key that those are signed with, base64")

if(NOT TARNIK_UPDATE_FEED MATCHES "^(https://[^ ]+)?$")
  message(FATAL_ERROR "TARNIK_UPDATE_FEED is no https address: ${TARNIK_UPDATE_FEED}")
endif()
# The 32 bytes of an Ed25519 key.
string(LENGTH "${TARNIK_UPDATE_PUBLIC_KEY}" keyLength)
if(NOT TARNIK_UPDATE_PUBLIC_KEY MATCHES "^([A-Za-z0-9+/]+=)?$" OR NOT keyLength MATCHES "^(0|44)$")
  message(FATAL_ERROR "TARNIK_UPDATE_PUBLIC_KEY is no Ed25519 key in base64: ${TARNIK_UPDATE_PUBLIC_KEY}")
endif()
if((TARNIK_UPDATE_FEED AND NOT TARNIK_UPDATE_PUBLIC_KEY) OR (TARNIK_UPDATE_PUBLIC_KEY AND NOT TARNIK_UPDATE_FEED))
  message(FATAL_ERROR "TARNIK_UPDATE_FEED and TARNIK_UPDATE_PUBLIC_KEY go together")
endif()

tarnik_plist_entries(TARNIK_PLIST_UPDATES
  SUFeedURL TARNIK_UPDATE_FEED
  SUPublicEDKey TARNIK_UPDATE_PUBLIC_KEY)

if(NOT CMAKE_SCRIPT_MODE_FILE)
  set(TARNIK_INFO_PLIST ${CMAKE_BINARY_DIR}/macos/Info.plist)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/../packaging/macos/Info.plist.in ${TARNIK_INFO_PLIST} @ONLY)
