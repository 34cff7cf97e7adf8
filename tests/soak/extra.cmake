list(APPEND test_properties RESOURCE_LOCK kpcb_return_slot)
add_dependencies(test_${area} KorbinPCB KPCBAPIDLL)
