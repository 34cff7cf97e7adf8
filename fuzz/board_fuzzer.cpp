// Board files: any bytes as a .pdbb image, and as the text form.
#include <cstddef>
#include <cstdint>
#include <string>

#include "CPdbbProcessor.h"
#include "PdbText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CString error;
    if (auto board = CPdbbProcessor::LoadPDBFromMemory(data, size, error)) {
        std::vector<unsigned char> image;
        CPdbbProcessor::SavePDBToMemory(*board, image, error);
    }
    if (size < 64 * 1024) {
        const std::string text(reinterpret_cast<const char*>(data), size);
        if (auto board = CPdbText::Read(CString(text), error)) (void)CPdbText::Write(*board);
    }
    return 0;
}
