// Importing an IPC-2581 document against the baseline of a bare libxml2 text-reader pass
// over the same bytes (the import should stay within twice the baseline). The document
// is generated (components with pins, tracks, vias), or read from KPCB_IPC2581_FILE.
#include <benchmark/benchmark.h>
#include <libxml/xmlreader.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "Ipc2581Import.h"

namespace {

std::string Generated(int components) {
    std::ostringstream xml;
    xml << "<?xml version=\"1.0\"?>\n<IPC-2581 revision=\"C\" xmlns=\"http://webstds.ipc.org/2581\">\n"
        << "<Content><DictionaryStandard units=\"MILLIMETER\">"
        << "<EntryStandard id=\"R\"><RectCenter width=\"0.6\" height=\"1.2\"/></EntryStandard>"
        << "<EntryStandard id=\"C\"><Circle diameter=\"0.6\"/></EntryStandard></DictionaryStandard></Content>\n"
        << "<Ecad name=\"b\"><CadHeader units=\"MILLIMETER\"/><CadData>\n"
        << "<Layer name=\"T\" layerFunction=\"CONDUCTOR\" side=\"TOP\"/><Layer name=\"B\" layerFunction=\"CONDUCTOR\" side=\"BOTTOM\"/>\n"
        << "<Layer name=\"D\" layerFunction=\"DRILL\" side=\"ALL\"><Span fromLayer=\"T\" toLayer=\"B\"/></Layer>\n"
        << "<Step name=\"s\"><Package name=\"P\">";
    for (int pin = 0; pin < 8; ++pin)
        xml << "<Pin number=\"" << pin + 1 << "\"><Location x=\"" << pin * 0.65 << "\" y=\"0\"/><StandardPrimitiveRef id=\"R\"/></Pin>";
    xml << "</Package>\n";
    for (int c = 0; c < components; ++c)
        xml << "<Component refDes=\"U" << c << "\" packageRef=\"P\" part=\"X\" layerRef=\"T\"><Xform rotation=\"90\"/>"
            << "<Location x=\"" << c % 100 * 6 << "\" y=\"" << c / 100 * 6 << "\"/></Component>\n";
    xml << "<LayerFeature layerRef=\"T\">\n";
    for (int c = 0; c < components; ++c) {
        xml << "<Set net=\"N" << c << "\"><Features><UserSpecial>";
        for (int t = 0; t < 10; ++t)
            xml << "<Line startX=\"" << c + t << ".125\" startY=\"" << t << ".5\" endX=\"" << c + t + 1
                << ".125\" endY=\"" << t << ".5\"><LineDesc lineWidth=\"0.2\" lineEnd=\"ROUND\"/></Line>";
        xml << "</UserSpecial></Features><Pad><Location x=\"" << c << ".5\" y=\"-3\"/><StandardPrimitiveRef id=\"C\"/></Pad></Set>\n";
    }
    xml << "</LayerFeature><LayerFeature layerRef=\"D\">\n";
    for (int c = 0; c < components; ++c)
        xml << "<Set net=\"N" << c << "\"><Hole name=\"h\" diameter=\"0.3\" platingStatus=\"VIA\" x=\"" << c << ".5\" y=\"-3\"/></Set>\n";
    xml << "</LayerFeature></Step></CadData></Ecad></IPC-2581>\n";
    return xml.str();
}

const std::string& Document() {
    static const std::string document = [] {
        if (const char* path = std::getenv("KPCB_IPC2581_FILE")) {
            std::ifstream in(path, std::ios::binary);
            return std::string(std::istreambuf_iterator<char>(in), {});
        }
        return Generated(20000);
    }();
    return document;
}

void BareReaderPass(benchmark::State& state) {
    const std::string& document = Document();
    for (auto _ : state) {
        xmlTextReaderPtr reader = xmlReaderForMemory(document.data(), static_cast<int>(document.size()), nullptr,
                                                     nullptr, XML_PARSE_NONET | XML_PARSE_COMPACT);
        long nodes = 0;
        while (xmlTextReaderRead(reader) == 1) ++nodes;
        xmlFreeTextReader(reader);
        benchmark::DoNotOptimize(nodes);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(BareReaderPass)->Unit(benchmark::kMillisecond);

void Import(benchmark::State& state) {
    const std::string& document = Document();
    for (auto _ : state) {
        std::vector<std::string> warnings;
        std::string error;
        auto board = ImportIpc2581Buffer(document.data(), document.size(), {}, warnings, error);
        if (!board) state.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(board.get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
}
BENCHMARK(Import)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
