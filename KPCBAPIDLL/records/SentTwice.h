// The requests that travel twice: the library sends them before and after its reply
// slot exists, and the viewer acts on the first copy and answers the second.
#pragma once

#include "CKPRCI__Base.h"

// Whether record is one of them: the named highlights, the section highlight, and the
// red-mark calling status when it asks for the status back.
bool SentTwice(const CKPRCI__Base& record);
