// Bitmap capture, text export and the explorer. The capture renders the current view
// (docs/rendering.md) and writes it as a BMP file; the export writes the board's text
// form. A file that cannot be written leaves a journal note; nothing else tells.
#include <cstring>
#include <fstream>

#include "CaptureRecords.h"
#include "Dispatcher.h"
#include "PdbText.h"
#include "RenderView.h"
#include "ExplorerList.h"

namespace viewer {
namespace {

Answer Capture(CKPRCI__Base& base, ViewerContext& context) {
    const std::string path = static_cast<CKPRCI_Capture_ExportBitmap&>(base).GetExport_FilePath().str();
    context.view.captures.push_back(path);
    const Bitmap picture = RenderView(*context.board, context.view);
    const std::string size = std::to_string(picture.Width()) + "x" + std::to_string(picture.Height());
    std::string why;
    if (!picture.WriteBmp(path, why)) return NoAnswer("bitmap " + size + " NOT written to " + path + ": " + why);
    return NoAnswer("bitmap " + size + " written to " + path);
}

Answer Export(CKPRCI__Base& base, ViewerContext& context) {
    const std::string path = static_cast<CKPRCI_Export_PDBBAscii&>(base).GetPdbbaFilePath().str();
    context.view.exports.push_back(path);
    CKPRCI__BaseRV reply;  // 0 whether or not the file was written
    CString error;
    if (!CPdbText::WriteFile(*context.board, CString(path), error))
        return ReplyAnswer(reply, "text export NOT written to " + path + ": " + error.str());
    return ReplyAnswer(reply, "text export written to " + path);
}

Answer Explorer(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_Explorer&>(base);
    const std::string path = record.GetObjectListFilePath().str();
    const ExplorerList list = ReadExplorerList(*context.board, record.GetSelectionTypeA(), path);
    Answer answer;
    answer.channel = Answer::Channel::ReturnSlot;
    const int32_t acknowledgement = 0;
    answer.bytes.resize(4);
    std::memcpy(answer.bytes.data(), &acknowledgement, 4);
    answer.note = "explorer type " + std::to_string(record.GetSelectionTypeA()) + " from " + path + ": " + list.Describe();
    return answer;
}

}  // namespace

void RegisterCaptureHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_Capture_ExportBitmap::ClassID, Capture);
    dispatcher.Register(CKPRCI_Export_PDBBAscii::ClassID, Export);
    dispatcher.Register(CKPRCI_Explorer::ClassID, Explorer);
}

}  // namespace viewer
