# GoogleTest from its sources, so that one version serves the native and the Windows build.
set(KDUUI_GOOGLETEST_DIR "/usr/src/googletest" CACHE PATH "Source tree of GoogleTest")
if(NOT EXISTS "${KDUUI_GOOGLETEST_DIR}/CMakeLists.txt")
  message(FATAL_ERROR "GoogleTest's sources are not in ${KDUUI_GOOGLETEST_DIR}: install Debian's "
    "package googletest, set KDUUI_GOOGLETEST_DIR, or switch the tests off with -DKDUUI_TESTS=OFF")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory("${KDUUI_GOOGLETEST_DIR}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
if(KDUUI_SANITIZE)
  foreach(lib gtest gtest_main gmock gmock_main)
    target_compile_options(${lib} PRIVATE "-fsanitize=${KDUUI_SANITIZE}")
  endforeach()
endif()

# Half the time to compile a test is GoogleTest's and Windows' headers: all programs share them compiled.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/kd_test_prelude.cpp" CONTENT "")
add_library(kd_test_prelude OBJECT EXCLUDE_FROM_ALL "${PROJECT_BINARY_DIR}/kd_test_prelude.cpp")
target_link_libraries(kd_test_prelude PRIVATE kd_options GTest::gmock GTest::gtest)
target_compile_options(kd_test_prelude PRIVATE -O0)
target_precompile_headers(kd_test_prelude PRIVATE $<$<BOOL:${WIN32}>:<winsock2.h$<ANGLE-R>>
  $<$<BOOL:${WIN32}>:<windows.h$<ANGLE-R>> <gmock/gmock.h> <gtest/gtest.h> <algorithm> <functional> <map> <string> <vector>)

# kd_test_program(NAME DIR dir LABEL label [LIBS ...] [TIMEOUT seconds] [DESKTOP | OWN_SESSION [RUNNER script]]):
# one program of all <dir>/*_test.cpp, and one CTest entry per file, which runs the suites that the
# file defines. A test file belongs to exactly one entry, so nothing runs twice and nothing is left out.
# DESKTOP: its windows want the focus and the session's prefix for themselves, so that one such entry runs at a time.
# OWN_SESSION: each entry has a Wine session of its own, and runs beside the others; such entries start first. Such
# an entry has a processor for itself: a program and its Wine server wait for each other all the time, and do so
# longer when each wakes the other on another processor.
function(kd_test_program name)
  cmake_parse_arguments(arg "DESKTOP;OWN_SESSION" "DIR;LABEL;TIMEOUT;RUNNER" "LIBS;SOURCES" ${ARGN})
  file(GLOB files CONFIGURE_DEPENDS "${arg_DIR}/*_test.cpp")
  add_executable(${name} ${files} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE kd_options ${arg_LIBS} GTest::gmock GTest::gtest_main)
  # Test code is compiled often and runs for moments: quick to build comes first. What it tests is
  # compiled as it ships.
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} REUSE_FROM kd_test_prelude)
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  if(arg_OWN_SESSION AND NOT CMAKE_HOST_WIN32)
    if(NOT arg_RUNNER)
      set(arg_RUNNER "${PROJECT_SOURCE_DIR}/scripts/in-throw-away-prefix")
    endif()
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${arg_RUNNER}")
  endif()
  foreach(file IN LISTS files)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    file(STRINGS "${file}" lines REGEX "^(TEST|TEST_F|TEST_P|TYPED_TEST)\\(")
    set(filter "")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[A-Z_]+\\( *([A-Za-z0-9_]+).*" "\\1" suite "${line}")
      list(APPEND filter "${suite}.*" "*/${suite}.*" "*/${suite}/*" "${suite}/*")
    endforeach()
    if(NOT filter)
      message(FATAL_ERROR "${file} defines no test")
    endif()
    list(REMOVE_DUPLICATES filter)
    string(REPLACE ";" ":" filter "${filter}")
    get_filename_component(stem "${file}" NAME_WE)
    string(REGEX REPLACE "_test$" "" stem "${stem}")
    add_test(NAME "${arg_LABEL}.${stem}" COMMAND ${name} "--gtest_filter=${filter}")
    set_tests_properties("${arg_LABEL}.${stem}" PROPERTIES LABELS "${arg_LABEL}" TIMEOUT ${arg_TIMEOUT})
    if(arg_DESKTOP)
      set_tests_properties("${arg_LABEL}.${stem}" PROPERTIES RESOURCE_LOCK desktop)
    elseif(arg_OWN_SESSION)
      set_tests_properties("${arg_LABEL}.${stem}" PROPERTIES COST 1000 PROCESSOR_AFFINITY ON)
    endif()
  endforeach()
endfunction()
