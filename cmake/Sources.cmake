if(APPLE)
  set(TARNIK_OTHER_PLATFORM "_linux\\.cpp$|/platform/linux/")
else()
  set(TARNIK_OTHER_PLATFORM "_darwin\\.cpp$|/platform/macos/")
endif()

# Sets `out` to the sources that match the patterns, without those of the other platform. A file that
# appears or goes is noticed by the next build.
function(tarnik_sources out)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${ARGN})
  list(FILTER found EXCLUDE REGEX "${TARNIK_OTHER_PLATFORM}")
  set(${out} ${found} PARENT_SCOPE)
endfunction()
