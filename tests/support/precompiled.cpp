// Nothing but the headers that the tests share; see tests/CMakeLists.txt.
