// The exported pointer array of command records (see CommandRecordArray.h).
#include "CommandRecordArray.h"

#include "CKPRCI__Base.h"

// The export attribute comes with the declaration in the header.
template class CExPtrArray<CKPRCI__Base*, CKPRCI__Base*>;
