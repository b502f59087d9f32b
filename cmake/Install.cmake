# The files that `cmake --install` writes on Linux. On macOS packaging/macos/bundle.sh makes the bundle.
#
# There are two components, one for each Debian package: `console` runs without a display and without Qt, and `window`
# adds the rest.
if(APPLE)
  return()
endif()
include(GNUInstallDirs)
include(cmake/BundleSettings.cmake)
include(cmake/RuntimePins.cmake)

# The program is in a bundle folder as on macOS, so the same code finds its settings and its driver on both systems.
# app/platform/linux/LinuxDesktop.cpp names this folder, so the folder is the same on every architecture.
set(bundle lib/tarnik)
set(contents ${bundle}/Contents)
set(made ${CMAKE_BINARY_DIR}/install)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
set(linux ${CMAKE_SOURCE_DIR}/packaging/linux)

configure_file(${linux}/Info.plist.in ${made}/Info.plist @ONLY)
file(CREATE_LINK ../${contents}/MacOS/tarnik ${made}/tarnik SYMBOLIC)

install(TARGETS tarnik tarnik_console RUNTIME DESTINATION ${contents}/MacOS COMPONENT console)
install(FILES ${made}/Info.plist DESTINATION ${contents} COMPONENT console)
install(FILES ${made}/tarnik DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT console)
install(FILES ${linux}/tarnik.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT console)
# The folder of units is the same on every architecture.
install(FILES ${linux}/tarnik.service DESTINATION lib/systemd/user COMPONENT console)
install(FILES ${linux}/no-root.conf DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tarnik-console/examples COMPONENT console)
# tarnik_completion(<shell> <folder> <name>): installs what `tarnik completion <shell>` prints.
function(tarnik_completion shell folder name)
  install(CODE "execute_process(COMMAND $<TARGET_FILE:tarnik> completion ${shell}
    OUTPUT_FILE ${made}/completion.${shell} COMMAND_ERROR_IS_FATAL ANY)" COMPONENT console)
  install(FILES ${made}/completion.${shell} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} RENAME ${name}
    COMPONENT console)
endfunction()
tarnik_completion(bash bash-completion/completions tarnik)
tarnik_completion(zsh zsh/vendor-completions _tarnik)
tarnik_completion(fish fish/vendor_completions.d tarnik.fish)

install(TARGETS tarnik_window RUNTIME DESTINATION ${contents}/MacOS COMPONENT window)
if(TARNIK_DRIVER)
  install(PROGRAMS ${TARNIK_DRIVER} DESTINATION ${contents}/Resources RENAME cua-driver COMPONENT window)
endif()
install(FILES ${linux}/com.tarnik.node.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT window)
install(FILES ${linux}/com.tarnik.node.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT window)

# tarnik_icon(<template> <name> <folder>): makes an icon from packaging/icons/<template>.svg.in. A build after a change of
# one of its parts makes the icon again.
function(tarnik_icon template name folder)
  set(parts ${CMAKE_SOURCE_DIR}/packaging/icons)
  set(sources ${parts}/compose.sh ${parts}/mark.svg ${parts}/${template}.svg.in)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources})
  execute_process(COMMAND bash ${parts}/compose.sh ${parts}/${template}.svg.in
    OUTPUT_FILE ${made}/${name}.svg COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${made}/${name}.svg DESTINATION ${icons}/${folder}/apps COMPONENT window)
endfunction()
tarnik_icon(tile com.tarnik.node scalable)
tarnik_icon(symbolic com.tarnik.node-symbolic symbolic)
