// Bitmap capture, text export and the explorer. This build records the capture and
// export requests (it writes no picture and no text yet) and acknowledges the explorer.
#include <cstring>
#include <fstream>

#include "CaptureRecords.h"
#include "Dispatcher.h"
#include "ExplorerList.h"

namespace viewer {
namespace {

Answer Capture(CKPRCI__Base& base, ViewerContext& context) {
    const std::string path = static_cast<CKPRCI_Capture_ExportBitmap&>(base).GetExport_FilePath().str();
    context.view.captures.push_back(path);
    return NoAnswer("capture asked for " + path);
}

Answer Export(CKPRCI__Base& base, ViewerContext& context) {
    const std::string path = static_cast<CKPRCI_Export_PDBBAscii&>(base).GetPdbbaFilePath().str();
    context.view.exports.push_back(path);
    CKPRCI__BaseRV reply;
    return ReplyAnswer(reply, "text export asked for " + path);
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
