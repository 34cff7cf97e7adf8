#include "Dispatcher.h"

#include "RecordImage.h"

namespace viewer {

namespace {
// The largest reply buffer sent so far, waiting for the next reply (the viewer serves
// one command at a time): a large answer is then written into memory touched before
// instead of fresh pages, which cost more here than the copy itself.
std::vector<unsigned char>& SpareReplyBytes() {
    static std::vector<unsigned char> spare;
    return spare;
}
}  // namespace

Answer ReplyAnswer(CKPRCI__BaseRV& reply, std::string note) {
    Answer answer;
    answer.channel = Answer::Channel::ReplySlot;
    answer.bytes = std::move(SpareReplyBytes());
    records::ImageInto(reply, answer.bytes);
    answer.note = std::move(note);
    return answer;
}

void KeepReplyBytes(Answer& answer) {
    std::vector<unsigned char>& spare = SpareReplyBytes();
    if (answer.channel == Answer::Channel::ReplySlot && answer.bytes.capacity() > spare.capacity())
        spare = std::move(answer.bytes);
}

Answer NoAnswer(std::string note) {
    Answer answer;
    answer.note = std::move(note);
    return answer;
}

std::vector<std::string> ToStrings(const CStringArray& list) {
    std::vector<std::string> out;
    for (INT_PTR i = 0; i < list.GetSize(); ++i) out.push_back(list[i].str());
    return out;
}

std::string Joined(const std::vector<std::string>& names) {
    std::string out;
    for (size_t i = 0; i < names.size(); ++i) out += (i ? "," : "") + names[i];
    return out;
}

Dispatcher::Dispatcher() {
    RegisterViewHandlers(*this);
    RegisterHighlightHandlers(*this);
    RegisterRedMarkHandlers(*this);
    RegisterInformationHandlers(*this);
    RegisterPolygonMergeHandlers(*this);
    RegisterCaptureHandlers(*this);
}

Answer Dispatcher::Handle(CKPRCI__Base& record, ViewerContext& context) const {
    const auto found = m_handlers.find(record.GetClassID());
    if (found == m_handlers.end()) return NoAnswer("not handled");
    return found->second(record, context);
}

}  // namespace viewer
