# tarnik_translations(<target>): embeds the catalogues of translations/ into the program as the resource `translations`.
#
# lrelease compiles a catalogue. A Mac may lack it; the window is then in English.
function(tarnik_translations target)
  file(GLOB catalogues CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/translations/tarnik_*.ts)
  find_program(TARNIK_LRELEASE NAMES lrelease lrelease6 lrelease-qt6
    HINTS ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS} ${QT6_INSTALL_PREFIX}/lib/qt6/bin /usr/lib/qt6/bin)
  if(NOT TARNIK_LRELEASE)
    if(NOT APPLE)
      message(FATAL_ERROR "lrelease is missing; it is in Debian's package qt6-l10n-tools")
    endif()
    message(WARNING "lrelease is missing, so the window is in English only")
    set(catalogues)
  endif()

  set(folder ${CMAKE_CURRENT_BINARY_DIR}/translations)
  set(compiled)
  set(entries)
  foreach(catalogue IN LISTS catalogues)
    get_filename_component(name ${catalogue} NAME_WE)
    add_custom_command(OUTPUT ${folder}/${name}.qm
      COMMAND ${TARNIK_LRELEASE} -silent ${catalogue} -qm ${folder}/${name}.qm
      DEPENDS ${catalogue} VERBATIM)
    list(APPEND compiled ${folder}/${name}.qm)
    string(APPEND entries "<file>${name}.qm</file>")
  endforeach()

  # Uncompressed, so that the program uses a catalogue in place.
  file(CONFIGURE OUTPUT ${folder}/translations.qrc
    CONTENT "<RCC><qresource prefix=\"/translations\">${entries}</qresource></RCC>\n" @ONLY)
  add_custom_command(OUTPUT ${folder}/qrc_translations.cpp
    COMMAND Qt6::rcc --no-compress --name translations -o ${folder}/qrc_translations.cpp ${folder}/translations.qrc
    DEPENDS ${folder}/translations.qrc ${compiled} VERBATIM)
  target_sources(${target} PRIVATE ${folder}/qrc_translations.cpp)
  set_source_files_properties(${folder}/qrc_translations.cpp PROPERTIES
    SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOMOC ON SKIP_LINTING ON)
endfunction()
