# One way to declare a layer, a program or a test, so that flags and folder rules stand in one place.

add_library(qlx_flags INTERFACE)
target_compile_features(qlx_flags INTERFACE cxx_std_20)
target_compile_options(qlx_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  $<$<CXX_COMPILER_ID:GNU>:-Werror>     # clang builds the fuzzers alone, and warns of other things
  -ffp-contract=off                     # results are the same on every target
  $<$<CXX_COMPILER_ID:GNU>:-fnon-call-exceptions>  # a translated processor fault may be thrown from any instruction
  -fasynchronous-unwind-tables
  -fvisibility=hidden -fvisibility-inlines-hidden)
if(WIN32)
  target_compile_definitions(qlx_flags INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
endif()

# qlx_layer(NAME FOLDERS dir... [DEPENDS target...] [INCLUDE dir...])
# A static library of all sources of the folders. A layer sees the headers of what it depends on, and no others.
function(qlx_layer name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;DEPENDS;INCLUDE" ${ARGN})
  set(sources "")
  foreach(folder ${ARG_FOLDERS})
    file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
    list(APPEND sources ${found})
  endforeach()
  qlx_drop_other_systems(sources)
  add_library(${name} STATIC ${sources})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON LINKER_LANGUAGE CXX)
  target_include_directories(${name} PUBLIC ${ARG_INCLUDE})
  target_link_libraries(${name} PUBLIC qlx_flags ${ARG_DEPENDS})
endfunction()

# Sources named *Posix.cpp and *Windows.cpp belong to one family of systems each.
function(qlx_drop_other_systems list)
  set(kept ${${list}})
  if(WIN32)
    list(FILTER kept EXCLUDE REGEX "Posix\\.(cpp|h)$")
  else()
    list(FILTER kept EXCLUDE REGEX "Windows\\.(cpp|h)$")
  endif()
  set(${list} ${kept} PARENT_SCOPE)
endfunction()

# Tests are many and each case is short: their own code is optimised little, which halves the time to compile it.
set(qlx_test_speed $<$<CONFIG:Release>:-O1>)
if(QLX_SANITIZE)
  set(qlx_test_speed -O0)
endif()

# For presets that only check, in a third of the time: several sources are compiled as one, and a test program is one
# ctest test. The others compile each source by itself, so that one that forgets an include is noticed.
option(QLX_BULK "Compile several sources at once, and run test programs whole" OFF)
if(QLX_BULK)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)
  # What stands in an included source looks to the compiler as if it stood in a header.
  target_compile_options(qlx_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()

# qlx_tests(NAME FOLDER dir [DEPENDS target...]) - one test program a layer; each case a ctest test, except in bulk.
function(qlx_tests name)
  cmake_parse_arguments(ARG "" "FOLDER" "DEPENDS;DEFINITIONS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${ARG_FOLDER}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} qlx_test_support GTest::gtest mccore_program)
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
  target_compile_options(${name} PRIVATE ${qlx_test_speed})
  if(QLX_BULK)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
  endif()
endfunction()
