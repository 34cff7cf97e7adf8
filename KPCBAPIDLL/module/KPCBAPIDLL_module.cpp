// The shared library's own translation unit: everything else comes from the
// whole static archive of the client library.
#include "KPCBAPI.h"
