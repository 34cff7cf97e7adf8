// IPC-2581 documents: any bytes through the reader and the conversion into a board.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Ipc2581Import.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<std::string> warnings;
    std::string error;
    if (auto board = ImportIpc2581Buffer(reinterpret_cast<const char*>(data), size, {}, warnings, error)) {
        CString problem;
        (void)board->Validate(problem);
    }
    return 0;
}
