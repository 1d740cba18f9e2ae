# The target package: KdUUI10-VERSION.zip, what people get who ship the DLL or write programs for it.
find_program(KDUUI_ZIP zip)

set(kd_package_name "KdUUI10-${PROJECT_VERSION}")
set(kd_package_zip "${PROJECT_BINARY_DIR}/${kd_package_name}.zip")

# Where each file comes from and goes to, in pairs.
set(kd_package_files
  $<TARGET_FILE:KdUUI10> bin/KdUUI10.DLL
  $<TARGET_FILE:KdUUI10>.debug bin/KdUUI10.DLL.debug
  $<TARGET_LINKER_FILE:KdUUI10> lib/libKdUUI10.a
  "${PROJECT_SOURCE_DIR}/src/module/exports.def" lib/KdUUI10.def
  "${PROJECT_SOURCE_DIR}/include/kdui10.h" include/kdui10.h
  "${PROJECT_SOURCE_DIR}/docs/packaging.md" docs/packaging.md)
foreach(example IN ITEMS push_settings.c rename_port.cpp kdui10-example.inf kdui10-example-port.inf)
  list(APPEND kd_package_files "${PROJECT_SOURCE_DIR}/examples/${example}" "examples/${example}")
endforeach()

add_custom_target(package
  COMMAND "${CMAKE_COMMAND}" "-DZIP=${KDUUI_ZIP}" "-DOUTPUT=${kd_package_zip}" "-DNAME=${kd_package_name}"
          "-DFILES=${kd_package_files}" -P "${CMAKE_CURRENT_LIST_DIR}/make_package.cmake"
  COMMENT "Packing ${kd_package_name}.zip" VERBATIM)
add_dependencies(package KdUUI10)
