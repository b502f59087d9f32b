# Settings that the build writes to the Info.plist of its bundle. An empty setting is left out.
include(${CMAKE_CURRENT_LIST_DIR}/PlistEntries.cmake)

set(TARNIK_WEB_ORIGIN "" CACHE STRING "The service's website, instead of TARNIK_DEFAULT_WEB_ORIGIN")
set(TARNIK_NODE_RELEASE_BASE "" CACHE STRING "The address of the helper's signed releases")
set(TARNIK_NODE_RELEASE_PUBLIC_KEY "" CACHE STRING "The public key of those releases, base64url")
set(TARNIK_NODE_MIN_VERSION "" CACHE STRING "The oldest release of the helper that may be installed")
option(TARNIK_POLICY_MAY_SET_RELEASES "The policy of an organisation may name its own releases and key" OFF)
set(TARNIK_DRIVER "" CACHE FILEPATH "The desktop driver's executable, which goes into the bundle as cua-driver")

if(NOT TARNIK_WEB_ORIGIN MATCHES "^(https?://[A-Za-z0-9.-]+(:[0-9]+)?/?)?$")
  message(FATAL_ERROR "TARNIK_WEB_ORIGIN is not a web origin: ${TARNIK_WEB_ORIGIN}")
endif()
if(NOT TARNIK_NODE_RELEASE_BASE MATCHES "^(https?://[^ ]+)?$")
  message(FATAL_ERROR "TARNIK_NODE_RELEASE_BASE is not an address: ${TARNIK_NODE_RELEASE_BASE}")
endif()
# 32 bytes have 43 characters without padding.
string(REGEX REPLACE "=$" "" releaseKey "${TARNIK_NODE_RELEASE_PUBLIC_KEY}")
string(LENGTH "${releaseKey}" releaseKeyLength)
if(NOT releaseKey MATCHES "^[A-Za-z0-9_-]*$" OR NOT releaseKeyLength MATCHES "^(0|43)$")
  message(FATAL_ERROR
    "TARNIK_NODE_RELEASE_PUBLIC_KEY is not an Ed25519 key in base64url: ${TARNIK_NODE_RELEASE_PUBLIC_KEY}")
endif()
# The program installs nothing if it can't compare the minimum with a release.
if(NOT TARNIK_NODE_MIN_VERSION MATCHES "^([0-9][0-9][0-9][0-9]\\.[0-9][0-9]?\\.[0-9][0-9]?[0-9]?(-[0-9]+)?)?$")
  message(FATAL_ERROR "TARNIK_NODE_MIN_VERSION is not a version such as 2026.3.1: ${TARNIK_NODE_MIN_VERSION}")
endif()
if(TARNIK_DRIVER AND NOT EXISTS "${TARNIK_DRIVER}")
  message(FATAL_ERROR "TARNIK_DRIVER is not a file: ${TARNIK_DRIVER}")
endif()

set(policyMaySetReleases "")
if(TARNIK_POLICY_MAY_SET_RELEASES)
  set(policyMaySetReleases yes)
endif()
tarnik_plist_entries(TARNIK_PLIST_SETTINGS
  TKWebOrigin TARNIK_WEB_ORIGIN
  TKNodeReleaseBase TARNIK_NODE_RELEASE_BASE
  TKNodeReleasePublicKey TARNIK_NODE_RELEASE_PUBLIC_KEY
  TKNodeMinVersion TARNIK_NODE_MIN_VERSION
  TKPolicyMaySetReleases policyMaySetReleases)
