// KorbinPCB reference viewer: serves the KPCBAPI protocol without a screen.
//   KorbinPCB -LAUNCH-FROM-KAPI[-HIDE] <board file>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <fstream>
#include <string>

#include "CPdbbProcessor.h"
#include "FrameReader.h"
#include "Journal.h"
#include "KPCBAPI.h"
#include "SlotNames.h"
#include "ViewerServer.h"
#include "platform.h"

namespace {

constexpr int kHelloOpenWaitMs = 60000;
// From this board file size on (about 2,000 components) large heap pages pay back
// the restart that asks for them.
constexpr std::uintmax_t kLargeBoardBytes = 1 << 20;

const char kHelp[] =
    "KorbinPCB reference viewer\n"
    "\n"
    "Usage: KorbinPCB -LAUNCH-FROM-KAPI <board file>\n"
    "       KorbinPCB -LAUNCH-FROM-KAPI-HIDE <board file>\n"
    "\n"
    "Started by KPCB_Launch. It creates its command slot, says hello to the launching\n"
    "library (its window value, or a negative failure code) and serves commands until\n"
    "it is asked to close (SIGTERM on POSIX, WM_CLOSE on Windows).\n"
    "\n"
    "The board file is a board database: .pdbb, or its text form when the name ends\n"
    "in .pdbba.\n"
    "\n"
    "Hello failure codes:\n"
    "  -3  the board file is missing, cannot be read or is not a board\n"
    "  -6  the command slot of this process id is taken\n"
    "\n"
    "Environment:\n"
    "  KPCB_VIEWER_JOURNAL=<file>  append one line per record received\n"
    "\n"
    "It keeps the view state that commands set, answers queries from the loaded\n"
    "board (pin counts, pitch, placement, the pins of a net, the merged copper of a\n"
    "net), keeps red marks in files, renders its view to a BMP on capture and writes\n"
    "the board's text form on export. docs/viewer.md and docs/rendering.md in the\n"
    "source tree describe every answer.\n";

// The launching library creates the return slot only after this process started:
// keep trying for a while, unless asked to close meanwhile.
bool SayHello(int value) {
    CMailslot slot(1, ReturnSlotName());
    for (int waited = 0; !OpenWhenReady(slot, 50); waited += 50)
        if (waited >= kHelloOpenWaitMs || platform::CloseRequested()) return false;
    return slot.WriteBytes(&value, sizeof(value)) == 1;
}


}  // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    if (argc != 3 || (std::strcmp(argv[1], "-LAUNCH-FROM-KAPI") != 0 && std::strcmp(argv[1], "-LAUNCH-FROM-KAPI-HIDE") != 0)) {
        std::fputs(kHelp, stderr);
        return 2;
    }
    // A big board's memory is touched for the first time while it loads; with large
    // pages that costs a fraction of the page faults (docs/performance.md).
    std::error_code sizeUnknown;
    if (std::filesystem::file_size(argv[2], sizeUnknown) >= kLargeBoardBytes && !sizeUnknown)
        platform::RestartWithLargeHeapPages(argv);
    const intptr_t window = platform::InstallCloseRequest();

    viewer::ViewerContext context;
    context.boardPath = argv[2];
    viewer::Journal journal(platform::GetEnv("KPCB_VIEWER_JOURNAL"));
    CString error;
    context.board = CPdbbProcessor::LoadBoardFile(CString(context.boardPath), error);
    if (!context.board) {
        journal.Malformed("board not loaded: " + error.str());
        SayHello(KPCB_VIEWER_BOARD_UNREADABLE);  // negative hellos: why it could not start
        return 3;
    }
    viewer::ViewerServer server(context, journal);
    if (!server.Open()) {
        SayHello(KPCB_VIEWER_SLOT_TAKEN);
        return 4;
    }
    if (!SayHello(static_cast<int>(window))) return 5;
    server.Run();
    return 0;
}
