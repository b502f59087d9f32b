if(APPLE)
  set(TARNIK_OTHER_PLATFORM "_linux\\.cpp$|/platform/linux/")
else()
  set(TARNIK_OTHER_PLATFORM "_darwin\\.cpp$|/platform/macos/")
endif()

# Sets `out` to the sources that match the patterns, except those of the other platform. The next build notices new and
# deleted files.
function(tarnik_sources out)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${ARGN})
  list(FILTER found EXCLUDE REGEX "${TARNIK_OTHER_PLATFORM}")
  set(${out} ${found} PARENT_SCOPE)
endfunction()
