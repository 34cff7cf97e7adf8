// Joining a list of texts into one string, as the list-returning replies hand it to callers.
#pragma once

#include "CString.h"
#include "CStringArray.h"

namespace records {

// The entries in order with the delimiter between them, never after the last;
// an empty list gives an empty string.
inline CString Join(const CStringArray& entries, const CString& delimiter) {
    CString joined;
    for (INT_PTR i = 0; i < entries.GetSize(); ++i) {
        if (i) joined += delimiter;
        joined += entries.GetAt(i);
    }
    return joined;
}

}  // namespace records
