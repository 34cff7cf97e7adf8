// Building command records from their class ids, and reading a command image whose
// class is known only from its payload.
#pragma once

#include <memory>

#include "CKPRCI__Base.h"
#include "CMemFile.h"

// A default-constructed record of that class id; null for an id no record has.
std::unique_ptr<CKPRCI__Base> CreateCommandRecord(int classId);

// Reads the command image held by the whole file (from its first byte to its length):
// the class id, then the record's fields. Returns null, without throwing, when the
// image is shorter than 4 bytes, its id is unknown, its fields are truncated or
// malformed, or bytes follow the last field: an image is exactly one record, nothing
// before or after it. Callers must not rely on the file position afterwards.
std::unique_ptr<CKPRCI__Base> LoadCommandRecord(CMemFile& file);

// The class name of the record of that class id ("CKPRCI_Highlight"); null for an
// id no record has.
const char* CommandRecordName(int classId);
