# One interface target, kd_options, carries what every target of the project is compiled with.
add_library(kd_options INTERFACE)
target_include_directories(kd_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_features(kd_options INTERFACE cxx_std_20)
target_compile_options(kd_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror
  -fstack-protector-strong -ffunction-sections -fdata-sections)

option(KDUUI_COVERAGE "The sources of src/ count which of their lines run" OFF)
if(KDUUI_COVERAGE)
  target_compile_options(kd_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:--coverage>)
  target_link_options(kd_options INTERFACE --coverage)
else()
  # Paths inside the binaries are relative, so that a build does not depend on where it was made.
  target_compile_options(kd_options INTERFACE
    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${PROJECT_BINARY_DIR}=build")
endif()

if(WIN32)
  target_compile_definitions(kd_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT _WIN32_WINNT=0x0A00)
  # Without what nothing calls, except where the linker's time counts for more (kd_build_quickly).
  target_link_options(kd_options INTERFACE
    -static -fstack-protector-strong $<$<NOT:$<BOOL:$<TARGET_PROPERTY:KD_BUILT_QUICKLY>>>:-Wl,--gc-sections>
    -Wl,--no-insert-timestamp -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
endif()

set(KDUUI_SANITIZE "" CACHE STRING "Value of -fsanitize= for every target; empty for none")
if(KDUUI_SANITIZE)
  target_compile_options(kd_options INTERFACE
    "-fsanitize=${KDUUI_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  string(REPLACE "fuzzer-no-link," "" kd_link_sanitize "${KDUUI_SANITIZE}")
  target_link_options(kd_options INTERFACE "-fsanitize=${kd_link_sanitize}")
endif()

# The DLL cannot have a sanitizer's run-time library with it; traps need none. A trap ends the process where it is,
# and so does an assertion of the standard library.
option(KDUUI_TRAPS "Undefined behaviour traps, and the standard library asserts what it expects" OFF)
if(KDUUI_TRAPS)
  target_compile_options(kd_options INTERFACE -fsanitize=undefined -fsanitize-undefined-trap-on-error)
  target_compile_definitions(kd_options INTERFACE _GLIBCXX_ASSERTIONS KDUUI_TRAPS)
endif()

# The DLL is loaded and freed for every step of an installation: small counts for more than fast. The debug
# information is split off when the DLL is linked. Natively too, so that what is measured there is what ships.
set(KDUUI_PRODUCT_OPTIONS "$<$<CONFIG:Release>:-Os;-g>")

# kd_room(NAME sources... [LIBS libraries...]): a static library of one room.
function(kd_room name)
  cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
  add_library(${name} STATIC ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PUBLIC kd_options ${arg_LIBS})
endfunction()

# kd_library(...): a room of what ships, with what kd_room takes.
function(kd_library name)
  kd_room(${name} ${ARGN})
  target_compile_options(${name} PRIVATE ${KDUUI_PRODUCT_OPTIONS})
endfunction()

# kd_prelude(NAME headers... [LIBS libraries...]): headers that targets share compiled. Those of Windows and of
# libraries are half the time to compile a test.
function(kd_prelude name)
  cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/${name}.cpp" CONTENT "")
  add_library(${name} OBJECT EXCLUDE_FROM_ALL "${PROJECT_BINARY_DIR}/${name}.cpp")
  target_link_libraries(${name} PRIVATE kd_options ${arg_LIBS})
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} PRIVATE $<$<BOOL:${WIN32}>:<winsock2.h$<ANGLE-R>>
    $<$<BOOL:${WIN32}>:<windows.h$<ANGLE-R>> <algorithm> <functional> <map> <string> <vector> ${arg_UNPARSED_ARGUMENTS})
endfunction()

# kd_build_quickly(TARGET PRELUDE): without optimisation, and with the headers of a prelude. For tests and the
# workbench, which are compiled often and wait for Wine when they run; what they test is compiled as it ships.
function(kd_build_quickly target prelude)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-O0>)
  target_precompile_headers(${target} REUSE_FROM ${prelude})
  set_target_properties(${target} PROPERTIES KD_BUILT_QUICKLY ON)
endfunction()
