# Every build plays one script with every store, and what the script prints is compared with what is
# kept: once for all of Qt's versions, apart from what Qt itself does in several ways.
set(identical_folder ${CMAKE_CURRENT_SOURCE_DIR}/identical)
if(NOT VELMORA_QT_MAJOR EQUAL 4)
  set(identical_differences qt5-6)
  set(identical_foreign qt${VELMORA_QT_MAJOR})
elseif(Q_WS_QWS)
  set(identical_differences qt4)
  set(identical_foreign qt4-embedded)
else()
  set(identical_differences qt4)
  set(identical_foreign qt4)
endif()

add_library(identical-objects OBJECT)
foreach(source bookmarks cookies credentials differences Documents Draw fonts history main nodes
    preferences Script texts thumbnails Transcript)
  target_sources(identical-objects PRIVATE ${identical_folder}/${source}.cpp)
endforeach()
velmora_compiler_options(identical-objects)
target_link_libraries(identical-objects PRIVATE velmora-settings)

# velmora_identical(<suffix> <library>): the tests of this build of the library.
function(velmora_identical suffix library)
  set(program identical-script${suffix})
  add_executable(${program} $<TARGET_OBJECTS:identical-objects>
    $<TARGET_OBJECTS:support-LogRecorder>)
  velmora_compiler_options(${program})
  set_target_properties(${program} PROPERTIES ENABLE_EXPORTS ON)
  # Qt Test is in what the recorder is precompiled with.
  target_link_libraries(${program} PRIVATE ${library} ${VELMORA_QT_TEST})
  set(run ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${program}>)
  set(check ${identical_folder}/check.sh)
  set(kept ${identical_folder}/kept)
  add_test(NAME identical_files${suffix} COMMAND ${check} ${kept}/files.txt ${run})
  add_test(NAME identical_differences${suffix}
    COMMAND ${check} ${kept}/differences-${identical_differences}.txt ${run} differences)
  add_test(NAME identical_foreign${suffix}
    COMMAND ${check} ${kept}/foreign-${identical_foreign}.txt ${run} foreign)
  set(tests identical_files${suffix} identical_differences${suffix} identical_foreign${suffix})
  set_tests_properties(${tests} PROPERTIES TIMEOUT 300)
  if(IS_DIRECTORY /dev/shm)
    # Thousands of saves, none of which has to reach a disk.
    set_property(TEST ${tests} APPEND PROPERTY ENVIRONMENT TMPDIR=/dev/shm)
  endif()
endfunction()

velmora_identical("" velmora-settings)

# The device's processor has a char without sign; with this option others have it, too.
if(VELMORA_QT_MAJOR EQUAL 5 AND CMAKE_BUILD_TYPE STREQUAL "Release")
  get_target_property(identical_sources velmora-settings SOURCES)
  list(TRANSFORM identical_sources PREPEND ${PROJECT_SOURCE_DIR}/)
  add_library(velmora-settings-unsigned-char SHARED ${identical_sources})
  velmora_compiler_options(velmora-settings-unsigned-char)
  target_compile_options(velmora-settings-unsigned-char PRIVATE -funsigned-char)
  set_target_properties(velmora-settings-unsigned-char PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    # Who checks the library's sources, checks them once.
    EXPORT_COMPILE_COMMANDS OFF)
  target_include_directories(velmora-settings-unsigned-char PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(velmora-settings-unsigned-char
    PUBLIC ${VELMORA_QT_CORE} ${VELMORA_QT_NETWORK} ${VELMORA_QT_GUI}
    PRIVATE ${VELMORA_QT_CODECS} ${VELMORA_PLATFORM})
  velmora_identical(_unsigned_char velmora-settings-unsigned-char)
endif()
