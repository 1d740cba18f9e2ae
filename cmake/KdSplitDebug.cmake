# kd_split_debug_information(TARGET): the binary is shipped stripped; what a debugger needs lies beside it.
function(kd_split_debug_information target)
  # objcopy writes the time into a binary unless told one.
  set(objcopy "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=0 "${CMAKE_OBJCOPY}")
  set(file $<TARGET_FILE:${target}>)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${objcopy} --only-keep-debug ${file} ${file}.debug
    COMMAND ${objcopy} --strip-all --add-gnu-debuglink=${file}.debug ${file}
    VERBATIM)
endfunction()
