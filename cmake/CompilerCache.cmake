# Compiles through ccache where it is installed. Precompiled headers are cached only with this
# sloppiness; it stands in the command itself, so that a build started by hand hits the cache too.
find_program(TARNIK_CCACHE ccache)
if(TARNIK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${TARNIK_CCACHE})
endif()
