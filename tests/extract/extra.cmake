# The test importer plug-in, built once per format under the name the library looks
# for, into a folder of its own (the tests point KPCB_IMPORTER_DIR at it).
set(KPCB_TEST_IMPORTER_DIR ${CMAKE_BINARY_DIR}/test-importers)
foreach(format Allegro BoardDesigner Mentor CR5000PWS)
  add_library(test_importer_${format} MODULE ${CMAKE_CURRENT_LIST_DIR}/importer/TestImporter.cpp)
  target_link_libraries(test_importer_${format} PRIVATE kpcb_model)
  set_target_properties(test_importer_${format} PROPERTIES
    PREFIX "" OUTPUT_NAME KPCBImporter_${format} SUFFIX ".kpi"
    LIBRARY_OUTPUT_DIRECTORY ${KPCB_TEST_IMPORTER_DIR}
    RUNTIME_OUTPUT_DIRECTORY ${KPCB_TEST_IMPORTER_DIR})
  add_dependencies(test_extract test_importer_${format})
endforeach()
target_compile_definitions(test_extract PRIVATE KPCB_TEST_IMPORTER_DIR="${KPCB_TEST_IMPORTER_DIR}")
