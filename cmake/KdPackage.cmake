# What people get who ship the DLL or write programs for it: `cmake --install BUILD --prefix FOLDER` lays it out, and
# the target package packs it as KdUUI10-VERSION.zip.
find_program(KDUUI_ZIP zip)

install(TARGETS KdUUI10 RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES $<TARGET_FILE:KdUUI10>.debug DESTINATION bin)
install(FILES "${PROJECT_SOURCE_DIR}/src/module/exports.def" DESTINATION lib RENAME KdUUI10.def)
install(FILES "${PROJECT_SOURCE_DIR}/include/kdui10.h" DESTINATION include)
install(FILES "${PROJECT_SOURCE_DIR}/docs/packaging.md" DESTINATION docs)
foreach(example IN ITEMS push_settings.c rename_port.cpp kdui10-example.inf kdui10-example-port.inf)
  install(FILES "${PROJECT_SOURCE_DIR}/examples/${example}" DESTINATION examples)
endforeach()

set(kd_package_name "KdUUI10-${PROJECT_VERSION}")
add_custom_target(package
  COMMAND "${CMAKE_COMMAND}" "-DZIP=${KDUUI_ZIP}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DNAME=${kd_package_name}"
          -P "${CMAKE_CURRENT_LIST_DIR}/make_package.cmake"
  COMMENT "Packing ${kd_package_name}.zip" VERBATIM)
add_dependencies(package KdUUI10)
