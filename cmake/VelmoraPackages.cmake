# Three Debian packages, built with cpack from any build of this project: the library with the number
# of its binary interface in its name, what developers need, and the tool.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora-settings)
set(CPACK_PACKAGE_VENDOR "Velmora developers")
set(CPACK_PACKAGE_CONTACT "Velmora developers <developers@velmora.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL library development)
if(TARGET velmora-profile)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/platform)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(package_library libvelmora-settings${VELMORA_SOVERSION})
set(package_development libvelmora-settings-dev)
set(package_tool velmora-profile)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${package_library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/packages/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "persistent state of the Velmora browser
Keeps preferences, bookmarks with thumbnails, visits, cookies, credentials and
the font list in small XML files, and logs what it does.

This package holds the shared library, and the platform library for hosts.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${package_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${package_library} (= ${PROJECT_VERSION}), ${velmora_qt_debian}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "persistent state of the Velmora browser - development
Keeps preferences, bookmarks with thumbnails, visits, cookies, credentials and
the font list in small XML files, and logs what it does.

This package holds the headers, the CMake package and the pkg-config file.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${package_tool})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${package_library} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "shows, checks and repairs profiles of the Velmora browser
Looks into the folder of files in which the browser keeps its preferences,
bookmarks, visits, cookies, credentials and fonts: lists and changes entries,
finds and repairs damage, converts from and to the formats of other programs,
and writes a report that a browser can show.")

# What Debian wants in /usr/share/doc, in each package. The first line of LICENSE names the owners, the
# others are the terms.
find_program(GZIP gzip)
set(documents ${PROJECT_BINARY_DIR}/packages)
file(MAKE_DIRECTORY ${documents})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/LICENSE)
file(STRINGS LICENSE license LENGTH_MINIMUM 1)
list(POP_FRONT license copyright)
string(REPLACE "Copyright " "" copyright "${copyright}")
string(REPLACE ";" "\n " license "${license}")
configure_file(cmake/packages/copyright.in ${documents}/copyright @ONLY)
configure_file(cmake/packages/changelog.in ${documents}/changelog @ONLY)
execute_process(COMMAND ${GZIP} -9nf -k changelog WORKING_DIRECTORY ${documents})
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(folder ${CMAKE_INSTALL_DATADIR}/doc/${package_${component}})
  install(FILES ${documents}/copyright ${documents}/changelog.gz DESTINATION ${folder}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
  set(overrides cmake/packages/${component}.lintian-overrides)
  if(EXISTS ${PROJECT_SOURCE_DIR}/${overrides})
    install(FILES ${overrides} DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
      RENAME ${package_${component}} COMPONENT ${component} EXCLUDE_FROM_ALL)
  endif()
endforeach()

include(CPack)
