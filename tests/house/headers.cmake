# Every public header compiles alone, in a program with strict warnings that shares none of our
# flags, in the oldest language standard that its version of Qt is used with, which for Qt 4.8 is
# C++98; and all of them in a newer one.

set(header_sources)
set(includes)
foreach(header IN LISTS velmora_public_headers)
  string(MAKE_C_IDENTIFIER ${header} name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp)
  file(GENERATE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
  list(APPEND header_sources ${source})
  string(APPEND includes "#include \"${header}\"\n")
endforeach()
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/headers/all.cpp CONTENT "${includes}")

function(velmora_header_check standard)
  add_library(headers-cxx${standard} OBJECT ${ARGN})
  set_target_properties(headers-cxx${standard} PROPERTIES
    CXX_STANDARD ${standard}
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF)
  target_compile_options(headers-cxx${standard} PRIVATE -Wall -Wextra -pedantic-errors
    -Werror)
  target_link_libraries(headers-cxx${standard} PRIVATE velmora-settings)
endfunction()

if(VELMORA_QT_MAJOR EQUAL 4)
  velmora_header_check(98 ${header_sources})
  velmora_header_check(11 ${CMAKE_CURRENT_BINARY_DIR}/headers/all.cpp)
elseif(VELMORA_QT_MAJOR EQUAL 6)
  velmora_header_check(17 ${header_sources})
  velmora_header_check(20 ${CMAKE_CURRENT_BINARY_DIR}/headers/all.cpp)
elseif(NOT CMAKE_CXX_FLAGS MATCHES "sanitize|coverage")
  velmora_header_check(11 ${header_sources})
  velmora_header_check(17 ${CMAKE_CURRENT_BINARY_DIR}/headers/all.cpp)
endif()
