# Language and warnings for every target of the project.

# Qt's own implicit conversions differ between its majors, so they are switched off throughout.
set(velmora_qt_definitions QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

# File sizes, inode numbers and times of 64 bits, even where system calls have 32 by default: there, a
# file with a larger one could not be opened.
set(velmora_system_definitions _FILE_OFFSET_BITS=64 _TIME_BITS=64)

# No -Wnon-virtual-dtor: the binary interface gives VLMC_XMLSetting virtual operations and a destructor
# that is not virtual; -Wdelete-non-virtual-dtor, part of -Wall, still finds misuse.
set(velmora_warnings
  -Wall -Wextra -Wpedantic -Wshadow -Wcast-align -Wcast-qual -Wconversion -Wno-sign-conversion
  -Wdouble-promotion -Wformat=2 -Wno-format-nonliteral -Woverloaded-virtual
  -Wundef -Wunused)

option(VELMORA_WERROR "Treat warnings as errors" OFF)

function(velmora_compiler_options target)
  if(VELMORA_QT_MAJOR EQUAL 6)
    set(standard 17)
  else()
    set(standard 11)
  endif()
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD ${standard}
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF)
  target_compile_definitions(${target} PRIVATE ${velmora_qt_definitions}
    ${velmora_system_definitions})
  target_compile_options(${target} PRIVATE ${velmora_warnings})
  if(VELMORA_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
