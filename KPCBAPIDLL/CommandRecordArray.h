// The pointer array of command records, exported from the client library. It is
// instantiated once, in CommandRecordArray.cpp; this declaration keeps every other
// source from making a private copy of it.
#pragma once

#include "CExPtrArray.h"
#include "KPCBAPI.h"

class CKPRCI__Base;

extern template class KPCBAPI_EXPORT CExPtrArray<CKPRCI__Base*, CKPRCI__Base*>;
