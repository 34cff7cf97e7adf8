# The explorer tests answer on the one return slot that every launch also uses.
list(APPEND test_properties RESOURCE_LOCK kpcb_return_slot)
