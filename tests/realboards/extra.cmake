# Real boards: KiCad's demo boards exported as ODB++ and IPC-2581 once per build into a cache
# folder (the realboards_export fixture), read by the tests. Without kicad-cli (and
# in a cross build, whose tests cannot run KiCad) the fixture exports nothing and
# the tests skip.
# The test command points every build folder at one cache, so each board is exported once.
set(KPCB_REALBOARD_CACHE ${CMAKE_BINARY_DIR}/realboards CACHE PATH "Where the exported real boards are kept")
set(KPCB_KICAD_CLI "")
if(NOT CMAKE_CROSSCOMPILING)
  find_program(KPCB_KICAD_CLI_PROGRAM kicad-cli)
  if(KPCB_KICAD_CLI_PROGRAM)
    set(KPCB_KICAD_CLI ${KPCB_KICAD_CLI_PROGRAM})
  endif()
endif()
add_test(NAME realboards_export
  COMMAND ${CMAKE_COMMAND} -DKICAD_CLI=${KPCB_KICAD_CLI} -DPYTHON=/usr/bin/python3
          -DDEMOS=/usr/share/kicad/demos -DCACHE=${KPCB_REALBOARD_CACHE}
          -DBOARDS=pic_programmer,video,RoyalBlue54L-Feather
          -P ${CMAKE_CURRENT_LIST_DIR}/export_boards.cmake)
set_tests_properties(realboards_export PROPERTIES FIXTURES_SETUP kpcb_realboards TIMEOUT 3600)
list(APPEND test_properties FIXTURES_REQUIRED kpcb_realboards RESOURCE_LOCK kpcb_return_slot)
add_dependencies(test_${area} KorbinPCB KPCBAPIDLL)
if(TARGET kpcb_odb)
  set(KPCB_ODB_READER_BUILT 1)
else()
  set(KPCB_ODB_READER_BUILT 0)
endif()
if(TARGET kpcb_ipc2581)
  set(KPCB_IPC2581_READER_BUILT 1)
else()
  set(KPCB_IPC2581_READER_BUILT 0)
endif()
target_compile_definitions(test_${area} PRIVATE KPCB_REALBOARD_CACHE="${KPCB_REALBOARD_CACHE}"
  KPCB_KICAD_CLI="${KPCB_KICAD_CLI}" KPCB_ODB_READER_BUILT=${KPCB_ODB_READER_BUILT}
  KPCB_IPC2581_READER_BUILT=${KPCB_IPC2581_READER_BUILT})
