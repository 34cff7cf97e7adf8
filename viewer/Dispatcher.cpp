#include "Dispatcher.h"

#include "CArchive.h"

namespace viewer {

Answer ReplyAnswer(CKPRCI__BaseRV& reply, std::string note) {
    CMemFile file(1024);
    {
        CArchive ar(&file, CArchive::store, 4096);
        reply.Serialize(ar);
        ar.Close();
    }
    Answer answer;
    answer.channel = Answer::Channel::ReplySlot;
    answer.bytes.resize(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!answer.bytes.empty()) file.Read(answer.bytes.data(), static_cast<UINT>(answer.bytes.size()));
    answer.note = std::move(note);
    return answer;
}

Answer NoAnswer(std::string note) {
    Answer answer;
    answer.note = std::move(note);
    return answer;
}

Dispatcher::Dispatcher() { RegisterViewHandlers(*this); }

Answer Dispatcher::Handle(CKPRCI__Base& record, ViewerContext& context) const {
    const auto found = m_handlers.find(record.GetClassID());
    if (found == m_handlers.end()) return NoAnswer("not handled");
    return found->second(record, context);
}

}  // namespace viewer
