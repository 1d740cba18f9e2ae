# Delay-loading with binutils: a definition file of the functions that are used, an import library that
# dlltool makes of it, and the run time's libdelayimp.
set(KDUUI_DLLTOOL "${CMAKE_DLLTOOL}" CACHE FILEPATH "dlltool of the toolchain")

# kd_delay_load(DLL function...): these functions of DLL are loaded when they are first called.
function(kd_delay_load dll)
  get_filename_component(stem "${dll}" NAME_WE)
  set(definition "${CMAKE_CURRENT_BINARY_DIR}/delay_${stem}.def")
  set(library "${CMAKE_CURRENT_BINARY_DIR}/libdelay_${stem}.a")
  # dlltool makes symbols of the file's name as it is given: a path would make them differ from build to build.
  list(JOIN ARGN "\n    " functions)
  file(CONFIGURE OUTPUT "${definition}" CONTENT "LIBRARY \"${dll}\"\nEXPORTS\n    ${functions}\n" @ONLY)
  add_custom_command(OUTPUT "${library}"
    COMMAND "${KDUUI_DLLTOOL}" -m i386:x86-64 -d "${definition}" -D "${dll}" -y "libdelay_${stem}.a"
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    DEPENDS "${definition}" COMMENT "Delay-import library of ${dll}" VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY KDUUI_DELAY_LIBRARIES "${library}")
endfunction()

# kd_link_delay_loads(TARGET): links what the directory's kd_delay_load calls made. Whole archives, so that the
# functions are found in them and not in the ordinary import libraries of the same DLLs further on.
function(kd_link_delay_loads target)
  get_property(libraries DIRECTORY PROPERTY KDUUI_DELAY_LIBRARIES)
  add_custom_target(${target}_delay_libraries DEPENDS ${libraries})
  add_dependencies(${target} ${target}_delay_libraries)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${libraries})
  target_link_options(${target} PRIVATE -Wl,--whole-archive ${libraries} -Wl,--no-whole-archive)
  target_link_libraries(${target} PRIVATE delayimp)
endfunction()
