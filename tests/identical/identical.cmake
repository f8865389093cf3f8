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

add_executable(identical-script)
foreach(source bookmarks cookies credentials differences Documents Draw fonts history main nodes
    preferences Script texts thumbnails Transcript)
  target_sources(identical-script PRIVATE ${identical_folder}/${source}.cpp)
endforeach()
target_sources(identical-script PRIVATE $<TARGET_OBJECTS:support-LogRecorder>)
velmora_compiler_options(identical-script)
set_target_properties(identical-script PROPERTIES ENABLE_EXPORTS ON)
# Qt Test is in what the recorder is precompiled with.
target_link_libraries(identical-script PRIVATE velmora-settings ${VELMORA_QT_TEST})

# velmora_identical(<suffix> [variable=value...]): the tests of this build, with a suffix to their
# names, in this environment.
function(velmora_identical suffix)
  set(run ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:identical-script>)
  set(check ${identical_folder}/check.sh)
  set(kept ${identical_folder}/kept)
  add_test(NAME identical_files${suffix} COMMAND ${check} ${kept}/files.txt ${run})
  add_test(NAME identical_differences${suffix}
    COMMAND ${check} ${kept}/differences-${identical_differences}.txt ${run} differences)
  add_test(NAME identical_foreign${suffix}
    COMMAND ${check} ${kept}/foreign-${identical_foreign}.txt ${run} foreign)
  set(tests identical_files${suffix} identical_differences${suffix} identical_foreign${suffix})
  set_tests_properties(${tests} PROPERTIES TIMEOUT 300
    ENVIRONMENT "${velmora_test_environment};${ARGN}")
  velmora_in_memory(${tests})
endfunction()

velmora_identical("")
if(velmora_unsigned_char)
  velmora_identical(_unsigned_char LD_LIBRARY_PATH=${velmora_unsigned_char})
endif()
