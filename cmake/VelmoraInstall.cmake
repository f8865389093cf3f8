# Headers, library, CMake package and pkg-config file.

include(CMakePackageConfigHelpers)

# The host's platform library is installed beside the library; the device has its own, where its
# loader finds it.
if(NOT VELMORA_PLATFORM_LIBRARY)
  set_target_properties(velmora-settings PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
install(TARGETS velmora-settings EXPORT VelmoraSettings
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT library NAMELINK_COMPONENT development)

foreach(header IN LISTS velmora_public_headers)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmora-settings/${folder}
    COMPONENT development)
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VelmoraSettings)
install(EXPORT VelmoraSettings NAMESPACE Velmora:: FILE VelmoraSettingsTargets.cmake
  DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(cmake/VelmoraSettingsConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/VelmoraSettingsConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  ${CMAKE_CURRENT_BINARY_DIR}/VelmoraSettingsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/VelmoraSettingsConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/VelmoraSettingsConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

file(RELATIVE_PATH velmora_prefix_from_pkgconfig
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/velmora-settings.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/velmora-settings.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velmora-settings.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
