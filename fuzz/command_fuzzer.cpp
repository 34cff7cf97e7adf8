// Viewer side: any bytes received as a command payload are decoded and, when they
// form a record, served against the sample board. Requests that name files (red-mark
// files, captures, exports, explorer lists) are decoded but not served, so that the
// fuzzer never writes or reads files of its choosing.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "CPdbbProcessor.h"
#include "CaptureRecords.h"
#include "Dispatcher.h"
#include "RecordFactory.h"
#include "RedMarkRecords.h"

namespace {
viewer::ViewerContext& Context() {
    static viewer::ViewerContext context = [] {
        viewer::ViewerContext c;
        CString error;
        c.board = CPdbbProcessor::LoadBoardFile(CString(KPCB_SOURCE_DIR "/samples/demo_board.pdbba"), error);
        return c;
    }();
    return context;
}

bool NamesFiles(int classId) {
    return classId == CKPRCI_RedMark_SaveLoad::ClassID || classId == CKPRCI_Capture_ExportBitmap::ClassID ||
           classId == CKPRCI_Export_PDBBAscii::ClassID || classId == CKPRCI_Explorer::ClassID;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static viewer::Dispatcher dispatcher;
    viewer::ViewerContext& context = Context();
    if (!context.board) return 0;
    CMemFile file(1024);
    file.Write(data, static_cast<UINT>(size));
    std::unique_ptr<CKPRCI__Base> record = LoadCommandRecord(file);
    if (!record || NamesFiles(record->GetClassID())) return 0;
    dispatcher.Handle(*record, context);
    // Keep the state from growing without bound across inputs.
    if (context.view.highlights.size() > 64) context.view.highlights.clear();
    return 0;
}
