# tarnik_core_library(<folder> [LINKS <folder>...])
#
# Makes core/<folder> the static library tarnik_<folder>. LINKS names the folders of lower layers that the library may
# use. Code that uses another folder doesn't link. A folder without sources becomes a header-only library.
function(tarnik_core_library folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  set(name tarnik_${folder})
  list(TRANSFORM arg_LINKS PREPEND tarnik_)
  tarnik_sources(sources ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)

  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${arg_LINKS})
    return()
  endif()

  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE tarnik_options)
  target_precompile_headers(${name} PRIVATE ${TARNIK_STANDARD_HEADERS})
endfunction()

# tarnik_quick_sources(<file>...): compiles these sources for speed. All other sources of a release are compiled for
# size. That would make these sources many times slower. They use no precompiled header, because a precompiled header
# fits one optimisation level only.
function(tarnik_quick_sources)
  set_source_files_properties(${ARGN} PROPERTIES
    COMPILE_OPTIONS $<$<CONFIG:Release>:-O2> SKIP_PRECOMPILE_HEADERS ON)
endfunction()
