# Libraries of the system. Header-only ones are met through a folder of links, never through /usr/include itself:
# a cross build must not see the headers of the machine that it is built on.

set(qlx_links ${CMAKE_BINARY_DIR}/system-headers)

# qlx_header_library(NAME entry...) - an interface target that sees the given entries of /usr/include alone.
function(qlx_header_library name)
  set(folder ${qlx_links}/${name})
  file(MAKE_DIRECTORY ${folder})
  foreach(entry ${ARGN})
    if(NOT EXISTS /usr/include/${entry})
      message(FATAL_ERROR "/usr/include/${entry} is missing: run ./check once, it installs what is needed")
    endif()
    file(CREATE_LINK /usr/include/${entry} ${folder}/${entry} SYMBOLIC)
  endforeach()
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE ${folder})
endfunction()

qlx_header_library(tnt tnt jama)
qlx_header_library(nlohmann nlohmann)
qlx_header_library(tinygltf tiny_gltf.h)
target_link_libraries(tinygltf INTERFACE nlohmann)
qlx_header_library(cli11 CLI)
qlx_header_library(fmt_headers fmt)
add_library(fmt STATIC ${CMAKE_CURRENT_LIST_DIR}/fmt/Format.cpp)
target_compile_features(fmt PUBLIC cxx_std_20)
target_link_libraries(fmt PUBLIC fmt_headers)
set_target_properties(fmt PROPERTIES POSITION_INDEPENDENT_CODE ON)

set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
include(GoogleTest)
