# What people get who ship the DLL or write programs for it: `cmake --install BUILD --prefix FOLDER` lays it out, and
# the target package packs it as KdUUI10-VERSION.zip.

install(TARGETS KdUUI10 RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES $<TARGET_FILE:KdUUI10>.debug DESTINATION bin)
install(TARGETS kdport RUNTIME DESTINATION bin)
install(FILES "${PROJECT_SOURCE_DIR}/src/module/exports.def" DESTINATION lib RENAME KdUUI10.def)
install(FILES "${PROJECT_SOURCE_DIR}/include/kdui10.h" DESTINATION include)
install(FILES "${PROJECT_SOURCE_DIR}/docs/packaging.md" "${PROJECT_SOURCE_DIR}/docs/kdport.md" DESTINATION docs)
# The notices of what is linked into the binaries, as Debian's packages have them.
foreach(part IN ITEMS gcc-mingw-w64-base mingw-w64-x86-64-dev libcli11-dev nlohmann-json3-dev)
  set(notice "/usr/share/doc/${part}/copyright")
  if(EXISTS "${notice}")
    install(FILES "${notice}" DESTINATION licences RENAME "${part}.txt")
  else()
    message(WARNING "The package will lack the licence notice of ${part}: ${notice} is not there")
  endif()
endforeach()
foreach(example IN ITEMS push_settings.c rename_port.cpp kdui10-example.inf kdui10-example-port.inf)
  install(FILES "${PROJECT_SOURCE_DIR}/examples/${example}" DESTINATION examples)
endforeach()

set(kd_package_name "KdUUI10-${PROJECT_VERSION}")
add_custom_target(package
  COMMAND "${CMAKE_COMMAND}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DNAME=${kd_package_name}"
          -P "${CMAKE_CURRENT_LIST_DIR}/make_package.cmake"
  COMMENT "Packing ${kd_package_name}.zip" VERBATIM)
add_dependencies(package KdUUI10 kdport)
