# Programs that use an installation as their authors would, built and run from a temporary prefix.

set(velmora_prefix ${CMAKE_CURRENT_BINARY_DIR}/prefix)
add_test(NAME installation
  COMMAND sh -c "rm -rf '${velmora_prefix}' && '${CMAKE_COMMAND}' --install '${PROJECT_BINARY_DIR}' --prefix '${velmora_prefix}'")
set_tests_properties(installation PROPERTIES FIXTURES_SETUP installation)

find_program(PKG_CONFIG pkg-config)
if(VELMORA_QT_MAJOR EQUAL 6)
  set(standard c++17)
else()
  set(standard c++11)
endif()

# What these need that is not installed at all, or not where it is looked for.
set(consumer_options)
if(VELMORA_QT_MAJOR EQUAL 4)
  list(APPEND consumer_options -DQT_QMAKE_EXECUTABLE=${velmora_qmake})
endif()
if(CMAKE_TOOLCHAIN_FILE)
  list(APPEND consumer_options -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE})
endif()
list(JOIN consumer_options " " consumer_options)
set(consumer_environment ${velmora_test_environment}
  CMAKE=${CMAKE_COMMAND} "CMAKE_OPTIONS=${consumer_options}"
  CXX=${CMAKE_CXX_COMPILER} "CXXFLAGS=${CMAKE_CXX_FLAGS}" QMAKE=${velmora_qmake}
  STANDARD=${standard})
if(VELMORA_QT_MAJOR EQUAL 4)
  list(APPEND consumer_environment PKG_CONFIG_PATH=${QT_LIBRARY_DIR}/pkgconfig)
endif()

function(consumer_test kind)
  add_test(NAME consumer-${kind}
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumers/build-and-run.sh ${kind} ${velmora_prefix}
      ${CMAKE_INSTALL_LIBDIR} ${CMAKE_CURRENT_BINARY_DIR}/consumer-${kind})
  set_tests_properties(consumer-${kind} PROPERTIES
    FIXTURES_REQUIRED installation
    TIMEOUT 300
    ENVIRONMENT "${consumer_environment}")
endfunction()

consumer_test(cmake)
if(PKG_CONFIG)
  consumer_test(pkg-config)
else()
  message(STATUS "pkg-config not found: its consumers go untested")
endif()
if(PKG_CONFIG AND velmora_qmake)
  consumer_test(qmake)
else()
  message(STATUS "qmake or pkg-config not found: consumers with qmake go untested")
endif()

# The same from the Debian packages, where they can be built and checked.
find_program(LINTIAN lintian)
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
if(TARGET velmora-profile AND LINTIAN AND DPKG_SHLIBDEPS AND VELMORA_QT_MAJOR EQUAL 5
    AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  add_test(NAME packages
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/packages/unpacked.sh ${CMAKE_CPACK_COMMAND}
      ${PROJECT_BINARY_DIR} ${CMAKE_INSTALL_LIBDIR} ${CMAKE_CURRENT_BINARY_DIR}/packages)
  set_tests_properties(packages PROPERTIES
    TIMEOUT 600
    ENVIRONMENT "CMAKE=${CMAKE_COMMAND};CXX=${CMAKE_CXX_COMPILER};CXXFLAGS=${CMAKE_CXX_FLAGS};QMAKE=;STANDARD=${standard};LC_ALL=C.UTF-8;QT_QPA_PLATFORM=offscreen"
    FIXTURES_SETUP debian_packages)
  add_test(NAME packages_fresh_root
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/packages/fresh-root.sh ${CMAKE_CURRENT_BINARY_DIR}/packages)
  # It mostly waits, so it had better begin early.
  set_tests_properties(packages packages_fresh_root PROPERTIES COST 1000)
  set_tests_properties(packages_fresh_root PROPERTIES
    TIMEOUT 1200 SKIP_RETURN_CODE 77 FIXTURES_REQUIRED debian_packages)
else()
  message(STATUS "The Debian packages go untested in this build")
endif()

# The project's own configuration, as a port uses it.
add_test(NAME qt-major-refused
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumers/check-qt-major.sh ${CMAKE_COMMAND}
    ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/qt-major)

# A second build of the whole library: for devices, and for the oldest Qt of development hosts.
if(VELMORA_QT_MAJOR LESS 6 AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND PKG_CONFIG)
  add_library(device-platform SHARED consumers/platform.cpp)
  target_include_directories(device-platform PRIVATE ${PROJECT_SOURCE_DIR})
  add_test(NAME platform-library
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/consumers/check-platform-library.sh ${CMAKE_COMMAND}
      ${CMAKE_CXX_COMPILER} ${PROJECT_SOURCE_DIR} $<TARGET_FILE:device-platform>
      ${CMAKE_CURRENT_BINARY_DIR}/platform-library)
  set_tests_properties(platform-library PROPERTIES
    TIMEOUT 900 COST 500 ENVIRONMENT "${consumer_environment};QT_MAJOR=${VELMORA_QT_MAJOR}")
endif()
