# The capture tests launch the viewer, and every launch waits on the one return slot:
# they must not overlap with other launching tests.
list(APPEND test_properties RESOURCE_LOCK kpcb_return_slot)
add_dependencies(test_${area} KorbinPCB KPCBAPIDLL)
# The bitmap and raster tests call the viewer's drawing code directly.
target_link_libraries(test_${area} PRIVATE kpcb_viewer)
