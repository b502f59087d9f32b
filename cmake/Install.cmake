# The files that `cmake --install` writes on Linux. On macOS packaging/macos/bundle.sh makes the bundle.
if(APPLE)
  return()
endif()
include(GNUInstallDirs)
include(cmake/BundleSettings.cmake)

# The program is in a bundle folder as on macOS, so one reader finds its settings and its driver on both systems.
# app/platform/linux/ has this folder as the install path; it is the same on every architecture.
set(bundle lib/tarnik)
set(contents ${bundle}/Contents)
set(made ${CMAKE_BINARY_DIR}/install)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
set(linux ${CMAKE_SOURCE_DIR}/packaging/linux)

configure_file(${linux}/Info.plist.in ${made}/Info.plist @ONLY)
file(CREATE_LINK ../${contents}/MacOS/tarnik ${made}/tarnik SYMBOLIC)

install(TARGETS tarnik tarnik_console tarnik_window RUNTIME DESTINATION ${contents}/MacOS)
install(FILES ${made}/Info.plist DESTINATION ${contents})
install(FILES ${made}/tarnik DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARNIK_DRIVER)
  install(PROGRAMS ${TARNIK_DRIVER} DESTINATION ${contents}/Resources RENAME cua-driver)
endif()

install(FILES ${linux}/com.tarnik.node.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${linux}/com.tarnik.node.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${linux}/tarnik.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# tarnik_icon(<template> <name> <folder>): makes an icon from packaging/icons/<template>.svg.in, and again when a part changes.
function(tarnik_icon template name folder)
  set(parts ${CMAKE_SOURCE_DIR}/packaging/icons)
  set(sources ${parts}/compose.sh ${parts}/mark.svg ${parts}/${template}.svg.in)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
  execute_process(COMMAND bash ${parts}/compose.sh ${parts}/${template}.svg.in
    OUTPUT_FILE ${made}/${name}.svg COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${made}/${name}.svg DESTINATION ${icons}/${folder}/apps)
endfunction()
tarnik_icon(tile com.tarnik.node scalable)
tarnik_icon(symbolic com.tarnik.node-symbolic symbolic)
