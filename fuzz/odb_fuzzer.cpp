// The ODB++ line parsers: the first byte picks a file kind, the rest is its text.
#include <cstddef>
#include <cstdint>
#include <string>

#include "OdbParse.h"
#include "OdbSymbols.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string file = "fuzz";
    odb::Log log;
    const double units = (data[0] & 0x80) ? 25.4 : 1.0;
    switch (data[0] % 7) {
        case 0: {
            CODBlayer layer;
            odb::ParseFeatures(text, file, units, layer, log);
            break;
        }
        case 1: {
            COwningArray<CODBcmp> components;
            odb::ParseComponents(text, file, units, false, components, log);
            break;
        }
        case 2: {
            odb::EdaData eda;
            odb::ParseEdaData(text, file, units, eda, log);
            break;
        }
        case 3: {
            COwningArray<CODBnet> nets;
            odb::ParseNetlist(text, file, units, nets, log);
            break;
        }
        case 4: {
            std::vector<odb::MatrixStep> steps;
            COwningArray<CODBmatrixLayer> layers;
            std::string error;
            odb::ParseMatrix(text, file, steps, layers, error);
            break;
        }
        case 5: {
            CODBstephdr header;
            odb::ParseStephdr(text, file, units, header, log);
            break;
        }
        default: {
            odb::SymbolShape shape;
            if (text.size() < 256) odb::StandardSymbol(text, units == 1.0 ? 0.001 : 0.0254, shape);
            break;
        }
    }
    log.Flush();
    return 0;
}
