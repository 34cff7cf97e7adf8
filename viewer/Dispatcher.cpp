#include "Dispatcher.h"

#include "RecordImage.h"

namespace viewer {

Answer ReplyAnswer(CKPRCI__BaseRV& reply, std::string note) {
    Answer answer;
    answer.channel = Answer::Channel::ReplySlot;
    answer.bytes = records::Image(reply);
    answer.note = std::move(note);
    return answer;
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
