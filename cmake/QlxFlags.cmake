# Flags of every source, those of bundled libraries included, and the files that a program needs beside it.

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(QLX_CCACHE ccache)
mark_as_advanced(QLX_CCACHE)
if(QLX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${QLX_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QLX_CCACHE})
endif()

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_compile_options(-msse2 -mfpmath=sse)  # x87 arithmetic gives other results than the 64-bit targets
endif()

set(QLX_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")
if(QLX_SANITIZE)
  # A finding of UBSan ends the program, so that its test fails. ASan always does.
  add_compile_options(-fsanitize=${QLX_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QLX_SANITIZE})
  if(QLX_SANITIZE MATCHES undefined)
    add_compile_options(-fsanitize=float-cast-overflow -fno-sanitize-recover=undefined,float-cast-overflow)
  endif()
endif()

option(QLX_FUZZ "Build the fuzzers: clang only" OFF)
if(QLX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)  # every layer tells the engine which way it went
endif()

# Exceptions cross between the library and the programs, so both use the one C++ runtime that lies beside them.
if(MINGW)
  foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS ${path})
      set(path ${CMAKE_FIND_ROOT_PATH}/lib/${name})
    endif()
    if(EXISTS ${path})  # each target has one of the two libgcc_s
      file(COPY ${path} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    endif()
  endforeach()
endif()
