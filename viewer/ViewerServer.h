// The viewer's protocol loop: owns the command slot, reads frames, decodes them,
// hands them to the dispatcher and sends the answers.
#pragma once

#include <memory>
#include <vector>

#include "CMailslot.h"
#include "Dispatcher.h"
#include "FrameReader.h"
#include "Journal.h"

namespace viewer {

class ViewerServer {
public:
    ViewerServer(ViewerContext& context, Journal& journal);
    // Creates the command slot of this process; false when the name is taken.
    bool Open();
    // Serves frames until the close request arrives.
    void Run();

private:
    void Serve(CMemFile& frame);
    void Send(const Answer& answer);
    bool SendReply(const void* bytes, uint32_t size);

    ViewerContext& m_context;
    Journal& m_journal;
    Dispatcher m_dispatcher;
    int m_pid;
    CMailslot m_commandSlot;
    FrameReceiver m_frames;
    std::unique_ptr<CMailslot> m_replyWriter;  // the reply slot's write side, kept between answers
    // A request that the library sends twice waits here for its second copy.
    std::vector<unsigned char> m_pendingImage;
    Answer m_pendingAnswer;
};

}  // namespace viewer
