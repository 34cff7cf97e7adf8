// kpcb_boardgen N out.pdbba|out.pdbb [seed]
//     writes a synthetic board of N components;
// kpcb_boardgen --convert in.pdbba|in.pdbb out.pdbba|out.pdbb
//     converts a board from one file form to the other.
// The form of each file follows its name: .pdbba is the text form.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "BoardGenerator.h"
#include "CPdbbProcessor.h"

int main(int argc, char** argv) {
    const bool convert = argc == 4 && std::strcmp(argv[1], "--convert") == 0;
    if (!convert && argc != 3 && argc != 4) {
        std::fprintf(stderr,
                     "usage: %s N out.pdbba|out.pdbb [seed]\n"
                     "       %s --convert in.pdbba|in.pdbb out.pdbba|out.pdbb\n",
                     argv[0], argv[0]);
        return 2;
    }
    std::unique_ptr<CPdb> pdb;
    CString error;
    const char* out = convert ? argv[3] : argv[2];
    if (convert) {
        pdb = CPdbbProcessor::LoadBoardFile(argv[2], error);
        if (!pdb) {
            std::fprintf(stderr, "%s: %s\n", argv[0], error.GetString());
            return 1;
        }
    } else {
        char* end = nullptr;
        const long count = std::strtol(argv[1], &end, 10);
        if (*end || count < 0 || count > 10000000) {
            std::fprintf(stderr, "%s: N must be a whole number from 0 to 10000000\n", argv[0]);
            return 2;
        }
        const unsigned long seed = argc == 4 ? std::strtoul(argv[3], nullptr, 10) : 1;
        pdb = GenerateBoard(static_cast<int>(count), static_cast<uint32_t>(seed));
    }
    if (!CPdbbProcessor::SaveBoardFile(out, *pdb, error)) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.GetString());
        return 1;
    }
    std::printf("%s: %d components, %d pins, %d nets\n", out, pdb->GetCompCount(), pdb->GetTotalPinCount(),
                pdb->GetNetCount());
    return 0;
}
