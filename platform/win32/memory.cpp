#include "../platform.h"

namespace platform {

// Windows commits large pages only with a privilege that users lack: nothing to do.
void RestartWithLargeHeapPages(char**) {}

}  // namespace platform
