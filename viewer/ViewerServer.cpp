#include "ViewerServer.h"

#include <cstring>

#include "FrameReader.h"
#include "RecordFactory.h"
#include "SentTwice.h"
#include "SlotNames.h"
#include "platform.h"

namespace viewer {
namespace {
constexpr int kPollMs = 200;
constexpr int kAnswerOpenWaitMs = 2000;

// The bytes of a received frame, in place: valid until the frame is next written.
struct Image {
    const unsigned char* data;
    size_t size;
    bool operator==(const std::vector<unsigned char>& other) const {
        return size == other.size() && (size == 0 || std::memcmp(data, other.data(), size) == 0);
    }
};

Image Contents(CMemFile& file) {
    file.SeekToBegin();
    void* start = nullptr;
    const UINT size = file.GetBufferPtr(CFile::bufferRead, static_cast<UINT>(file.GetLength()), &start, nullptr);
    file.SeekToBegin();
    return Image{static_cast<const unsigned char*>(start), size};
}
}  // namespace

ViewerServer::ViewerServer(ViewerContext& context, Journal& journal)
    : m_context(context), m_journal(journal), m_pid(platform::CurrentProcessId()),
      m_commandSlot(0, MakeCommandSlotName(platform::CurrentProcessId())) {}

bool ViewerServer::Open() { return m_commandSlot.Open() == 1; }

void ViewerServer::Run() {
    CMemFile frame(1024);
    while (!platform::CloseRequested()) {
        switch (m_frames.Receive(m_commandSlot, frame, kPollMs)) {
        case FrameResult::Nothing:
            break;
        case FrameResult::Malformed:
            m_journal.Malformed("messages that do not form a frame");
            break;
        case FrameResult::Frame:
            Serve(frame);
            break;
        }
    }
    // Serve what was already sent before the close request: nothing handed over is lost.
    for (FrameResult r; (r = m_frames.Receive(m_commandSlot, frame, 0)) != FrameResult::Nothing;)
        if (r == FrameResult::Frame) Serve(frame);
}

void ViewerServer::Serve(CMemFile& frame) {
    const Image image = Contents(frame);
    std::unique_ptr<CKPRCI__Base> record = LoadCommandRecord(frame);
    if (!record) {
        m_journal.Malformed("undecodable record of " + std::to_string(image.size) + " bytes");
        return;
    }
    const int classId = record->GetClassID();
    const char* name = CommandRecordName(classId);

    if (!m_pendingImage.empty()) {
        const bool secondCopy = image == m_pendingImage;
        Answer pending = std::move(m_pendingAnswer);
        m_pendingImage.clear();
        Send(pending);  // the second copy, or a late answer when another request came instead
        KeepReplyBytes(pending);
        if (secondCopy) {
            m_journal.Record(classId, name, image.data, image.size, "second copy answered");
            return;
        }
    }
    Answer answer = m_dispatcher.Handle(*record, m_context);
    m_journal.Record(classId, name, image.data, image.size, answer.note);
    if (SentTwice(*record) && answer.channel == Answer::Channel::ReplySlot) {
        m_pendingImage.assign(image.data, image.data + image.size);
        m_pendingAnswer = std::move(answer);
        return;
    }
    Send(answer);
    KeepReplyBytes(answer);
}

void ViewerServer::Send(const Answer& answer) {
    const uint32_t size = static_cast<uint32_t>(answer.bytes.size());
    if (answer.channel == Answer::Channel::ReplySlot) {
        if (!SendReply(answer.bytes.data(), size)) m_journal.Malformed("no reply slot to answer on");
    } else if (answer.channel == Answer::Channel::ReturnSlot) {
        if (!SendMessageTo(ReturnSlotName(), answer.bytes.data(), size, kAnswerOpenWaitMs))
            m_journal.Malformed("no return slot to acknowledge on");
    }
}

bool ViewerServer::SendReply(const void* bytes, uint32_t size) {
    // The reply slot's write side is kept between answers where a kept writer notices
    // a reply slot that was closed (and maybe made anew): a caller that keeps its
    // reply slot then gets each answer without a new connection.
    const bool keep = platform::KeptWriterNoticesClosedReader();
    if (keep && m_replyWriter && WriteFrame(*m_replyWriter, bytes, size)) return true;
    m_replyWriter.reset();
    auto writer = std::make_unique<CMailslot>(1, MakeReplySlotName(m_pid));
    if (!OpenWhenReady(*writer, kAnswerOpenWaitMs) || !WriteFrame(*writer, bytes, size)) return false;
    if (keep) m_replyWriter = std::move(writer);
    return true;
}

}  // namespace viewer
