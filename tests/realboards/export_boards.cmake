# Exports the real boards that the import tests read, once, into a cache folder of
# the build: for each board and unit an ODB++ archive (.tgz), the same job unpacked
# into a folder and an IPC-2581 file (.xml), and KiCad's own account of the board
# (board_facts.py). What is already there is kept, so a second run costs nothing.
#   cmake -DKICAD_CLI=... -DPYTHON=/usr/bin/python3 -DDEMOS=... -DCACHE=... -DBOARDS=a,b [-DUNITS=mm] -P export_boards.cmake
if(NOT KICAD_CLI OR NOT EXISTS "${KICAD_CLI}")
  message(STATUS "kicad-cli is not installed: no boards exported")
  return()
endif()
file(MAKE_DIRECTORY ${CACHE})
string(REPLACE "," ";" BOARDS "${BOARDS}")
if(NOT UNITS)
  set(UNITS mm in)
endif()
# Writes <stem><ending> with "kicad-cli pcb export <format> ..." of the board pcb,
# unless it is there: under a part name first, so a file that exists is whole. KiCad
# builds an ODB++ job in a fixed folder below TMPDIR, which two exports running at
# once (other builds) would share: each export gets a TMPDIR of its own.
function(export_once stem ending format)
  if(EXISTS ${stem}${ending})
    return()
  endif()
  file(REMOVE_RECURSE ${stem}.tmp)
  file(MAKE_DIRECTORY ${stem}.tmp)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env TMPDIR=${stem}.tmp
    ${KICAD_CLI} pcb export ${format} ${ARGN} -o ${stem}.part${ending} ${pcb} RESULT_VARIABLE status OUTPUT_QUIET)
  file(REMOVE_RECURSE ${stem}.tmp)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "kicad-cli could not export ${pcb} as ${format}")
  endif()
  file(RENAME ${stem}.part${ending} ${stem}${ending})
endfunction()

foreach(board ${BOARDS})
  file(GLOB_RECURSE pcb "${DEMOS}/${board}.kicad_pcb")
  list(GET pcb 0 pcb)
  if(NOT EXISTS ${CACHE}/${board}.tsv)
    execute_process(COMMAND ${PYTHON} ${CMAKE_CURRENT_LIST_DIR}/board_facts.py ${pcb} ${CACHE}/${board}.tsv
      RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
      message(FATAL_ERROR "KiCad's Python module could not read ${pcb}")
    endif()
  endif()
  foreach(unit ${UNITS})
    set(job ${CACHE}/${board}-${unit})
    export_once(${job} .tgz odb --compression tgz --units ${unit} --precision 6)
    export_once(${job} .xml ipc2581 --version C --units ${unit} --precision 6)
    if(NOT EXISTS ${job}/odb/matrix/matrix)
      file(REMOVE_RECURSE ${job})
      file(MAKE_DIRECTORY ${job})
      execute_process(COMMAND ${CMAKE_COMMAND} -E tar xzf ${job}.tgz WORKING_DIRECTORY ${job} RESULT_VARIABLE status)
      if(NOT status EQUAL 0)
        message(FATAL_ERROR "${job}.tgz could not be unpacked")
      endif()
    endif()
  endforeach()
endforeach()
