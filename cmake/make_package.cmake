# Packs a zip whose bytes depend on its files' contents only: cmake -DZIP= -DOUTPUT= -DNAME= -DFILES= -P this.
# FILES holds pairs of a file and its place in the archive. Order, times and rights are the same for everybody,
# and no owner is stored; cmake -E tar stores access times and owners, hence zip.
if(NOT ZIP)
  message(FATAL_ERROR "The package is made with zip: install it (Debian's package zip) and configure again")
endif()
cmake_path(GET OUTPUT PARENT_PATH folder)
set(stage "${folder}/package")
file(REMOVE_RECURSE "${stage}")
file(REMOVE "${OUTPUT}")

set(places "")
while(FILES)
  list(POP_FRONT FILES source place)
  file(COPY_FILE "${source}" "${stage}.file")
  cmake_path(SET target "${stage}/${NAME}/${place}")
  cmake_path(GET target PARENT_PATH parent)
  file(MAKE_DIRECTORY "${parent}")
  file(RENAME "${stage}.file" "${target}")
  file(CHMOD "${target}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  list(APPEND places "${NAME}/${place}")
endwhile()
list(SORT places)

set(ENV{TZ} UTC)
set(ENV{ZIPOPT} "")
execute_process(COMMAND touch -d 2024-01-01T00:00:00Z ${places}
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${ZIP}" -q -9 -X -D "${OUTPUT}" ${places}
  WORKING_DIRECTORY "${stage}" COMMAND_ERROR_IS_FATAL ANY)
