# The tests run the built kpcb and the demo, which launch the reference viewer: every launch
# waits on the one return slot, so these tests must not overlap with other launches.
list(APPEND test_properties RESOURCE_LOCK kpcb_return_slot)
if(TARGET kpcb)
  add_dependencies(test_${area} kpcb KorbinPCB KPCBAPIDLL)
endif()
add_dependencies(test_${area} kpcb_demo)
# The help test checks that every exported function has its subcommand.
target_compile_definitions(test_${area} PRIVATE KPCB_INCLUDE_DIR="${PROJECT_SOURCE_DIR}/include")
