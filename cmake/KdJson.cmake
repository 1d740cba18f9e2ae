# kd_json: nlohmann's JSON library, the documents of kdport. Headers only; copied for the same reason as CLI11's.
include_guard(GLOBAL)
find_path(KDUUI_JSON_DIR nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH
  DOC "Directory that has nlohmann/json.hpp in it")
if(NOT KDUUI_JSON_DIR)
  message(FATAL_ERROR "nlohmann's JSON headers are missing: install Debian's package nlohmann-json3-dev, or set "
    "KDUUI_JSON_DIR")
endif()
file(COPY "${KDUUI_JSON_DIR}/nlohmann" DESTINATION "${PROJECT_BINARY_DIR}/json")
add_library(kd_json INTERFACE)
target_include_directories(kd_json SYSTEM INTERFACE "${PROJECT_BINARY_DIR}/json")
