# Linux i386, built with the machine's own compiler. The processor flags of 32-bit builds stand in QlxFlags.cmake.
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)
