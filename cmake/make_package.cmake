# Packs a zip whose bytes depend on its files' contents only: cmake -DBUILD= -DNAME= -P this.
# What is installed from BUILD goes below NAME. Order, times and rights are the same for everybody, and no owner is
# stored; cmake -E tar stores access times and owners, hence zip.
# Looked for here, because a build that was configured for the demo is packed after the tests' tools were installed.
find_program(ZIP zip)
if(NOT ZIP)
  message(FATAL_ERROR "The package is made with zip: install it (Debian's package zip)")
endif()
set(stage "${BUILD}/package")
set(archive "${BUILD}/${NAME}.zip")
file(REMOVE_RECURSE "${stage}")
file(REMOVE "${archive}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${stage}/${NAME}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE files RELATIVE "${stage}" "${stage}/*")
list(SORT files)
foreach(file IN LISTS files)
  file(CHMOD "${stage}/${file}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endforeach()

set(ENV{TZ} UTC)
set(ENV{ZIPOPT} "")
execute_process(COMMAND touch -d 2024-01-01T00:00:00Z ${files}
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${ZIP}" -q -9 -X -D "${archive}" ${files}
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
