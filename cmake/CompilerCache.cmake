# Compiles with ccache if it is installed. ccache needs this sloppiness to cache precompiled headers. The launcher sets
# the variable, so the sloppiness also applies to builds without ./dev.
find_program(TARNIK_CCACHE ccache)
if(TARNIK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${TARNIK_CCACHE})
endif()
