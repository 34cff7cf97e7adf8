// kpcb_boardgen N out.pdbba|out.pdbb [seed]
// Writes a synthetic board of N components, in the text form or as a board database
// file according to the name.
#include <cstdio>
#include <cstdlib>

#include "BoardGenerator.h"
#include "CPdbbProcessor.h"

int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: %s N out.pdbba|out.pdbb [seed]\n", argv[0]);
        return 2;
    }
    char* end = nullptr;
    const long count = std::strtol(argv[1], &end, 10);
    if (*end || count < 0 || count > 10000000) {
        std::fprintf(stderr, "%s: N must be a whole number from 0 to 10000000\n", argv[0]);
        return 2;
    }
    const unsigned long seed = argc == 4 ? std::strtoul(argv[3], nullptr, 10) : 1;
    std::unique_ptr<CPdb> pdb = GenerateBoard(static_cast<int>(count), static_cast<uint32_t>(seed));
    CString error;
    if (!CPdbbProcessor::SaveBoardFile(argv[2], *pdb, error)) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.GetString());
        return 1;
    }
    std::printf("%s: %d components, %d pins, %d nets\n", argv[2], pdb->GetCompCount(), pdb->GetTotalPinCount(),
                pdb->GetNetCount());
    return 0;
}
