# Every public header compiles alone, in a program with strict warnings that shares none of our
# flags, in each language standard that Qt allows.

if(VELMORA_QT_MAJOR EQUAL 6)
  set(standards 17)
else()
  set(standards 11 17)
endif()

set(header_sources)
foreach(header IN LISTS velmora_public_headers)
  string(MAKE_C_IDENTIFIER ${header} name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${name}.cpp)
  file(GENERATE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n")
  list(APPEND header_sources ${source})
endforeach()

foreach(standard IN LISTS standards)
  add_library(headers-cxx${standard} OBJECT ${header_sources})
  set_target_properties(headers-cxx${standard} PROPERTIES
    CXX_STANDARD ${standard}
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF)
  target_compile_options(headers-cxx${standard} PRIVATE -Wall -Wextra -Wpedantic -Werror)
  target_link_libraries(headers-cxx${standard} PRIVATE velmora-settings)
endforeach()
