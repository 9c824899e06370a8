# What an installation holds, by component: runtime (the libraries), dev (headers and package files), tools.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(libraries kestrin kestrin-gtk kestrin-content)
set(tools kestrin-view kestrin-serve kestrin-record)
set(kestrin-view_is "show a web page in augmented reality")
set(kestrin-serve_is "serve an application folder over HTTPS")
set(kestrin-record_is "make recordings and look after them")
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Kestrin)

public_headers(${PROJECT_BINARY_DIR}/include)
foreach(library IN LISTS libraries)
  target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_features(${library} INTERFACE cxx_std_20)
endforeach()
set_target_properties(kestrin-gtk PROPERTIES EXPORT_NAME gtk)
set_target_properties(kestrin-content PROPERTIES EXPORT_NAME content)

install(TARGETS ${libraries} EXPORT Kestrin
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev)
install(EXPORT Kestrin NAMESPACE Kestrin:: DESTINATION ${package_folder} COMPONENT dev)
configure_package_config_file(cmake/package/KestrinConfig.cmake.in ${PROJECT_BINARY_DIR}/KestrinConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KestrinConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KestrinConfig.cmake ${PROJECT_BINARY_DIR}/KestrinConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT dev)
install(DIRECTORY ${PROJECT_BINARY_DIR}/include/kestrin DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
file(RELATIVE_PATH to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/package/kestrin-gtk.pc.in kestrin-gtk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kestrin-gtk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

install(TARGETS ${tools} RUNTIME COMPONENT tools)
find_program(HELP2MAN help2man REQUIRED)
foreach(tool IN LISTS tools)
  add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/${tool}.1
    COMMAND ${HELP2MAN} --no-info --name ${${tool}_is} --source Kestrin -o ${PROJECT_BINARY_DIR}/${tool}.1 $<TARGET_FILE:${tool}>
    DEPENDS ${tool} VERBATIM)
  list(APPEND manuals ${PROJECT_BINARY_DIR}/${tool}.1)
  install(FILES share/completions/kestrin DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME ${tool} COMPONENT tools)
endforeach()
add_custom_target(manuals ALL DEPENDS ${manuals})
install(FILES ${manuals} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
configure_file(share/desktop/org.kestrin.View.desktop.in org.kestrin.View.desktop @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/org.kestrin.View.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT tools)
install(FILES share/desktop/org.kestrin.View.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT tools)
# The demo as an application folder, and the client module: when the page side was built.
install(DIRECTORY share/applications/demo DESTINATION ${CMAKE_INSTALL_DATADIR}/kestrin COMPONENT tools)
install(DIRECTORY web/dist/demo/ DESTINATION ${CMAKE_INSTALL_DATADIR}/kestrin/demo/template COMPONENT tools OPTIONAL
  PATTERN *.map EXCLUDE)
install(DIRECTORY web/dist/client DESTINATION ${CMAKE_INSTALL_DATADIR}/kestrin COMPONENT dev OPTIONAL PATTERN *.map EXCLUDE)
