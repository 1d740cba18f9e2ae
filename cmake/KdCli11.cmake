# kd_cli11: CLI11, the command lines of the workbench's programs. Headers only, so those of the build machine
# serve a build for Windows too; they are copied, because the directory that they are installed in has the
# build machine's own headers beside them.
include_guard(GLOBAL)
find_path(KDUUI_CLI11_DIR CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH
  DOC "Directory that has CLI/CLI.hpp in it")
if(NOT KDUUI_CLI11_DIR)
  message(FATAL_ERROR "CLI11's headers are missing: install Debian's package libcli11-dev, or set KDUUI_CLI11_DIR")
endif()
file(COPY "${KDUUI_CLI11_DIR}/CLI" DESTINATION "${PROJECT_BINARY_DIR}/cli11")
add_library(kd_cli11 INTERFACE)
target_include_directories(kd_cli11 SYSTEM INTERFACE "${PROJECT_BINARY_DIR}/cli11")
# Templates all through, and a command line is read once: quick to build comes first.
target_compile_options(kd_cli11 INTERFACE -O0)
