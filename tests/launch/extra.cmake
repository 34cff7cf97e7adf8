# Every launch waits on the one return slot: launches must not overlap.
list(APPEND test_properties RESOURCE_LOCK kpcb_return_slot)
add_dependencies(test_${area} KorbinPCB KPCBAPIDLL)
# The client library's file name, for the tests that load a copy of it.
target_compile_definitions(test_${area} PRIVATE KPCB_CLIENT_LIBRARY_FILE="$<TARGET_FILE_NAME:KPCBAPIDLL>")
