// Red marks: kept in the viewer, saved to and loaded from files.
#include <algorithm>

#include "Dispatcher.h"
#include "RedMarkFile.h"
#include "RedMarkRecords.h"

namespace viewer {
namespace {

constexpr int kUnknownTitle = -200;
constexpr int kFileFailure = -201;

std::vector<RedMark>::iterator FindMark(ViewerContext& context, const CString& title) {
    return std::find_if(context.view.redMarks.begin(), context.view.redMarks.end(),
                        [&](const RedMark& m) { return m.title == title.str(); });
}

Answer SaveLoad(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_RedMark_SaveLoad&>(base);
    const std::string path = record.GetRedMarkFilePath().str();
    if (record.GetReadState() == 0) {
        const bool saved = SaveRedMarks(path, context.view.redMarks, record.GetAsciiData() != 0);
        return NoAnswer((saved ? "red marks saved to " : "red marks NOT saved to ") + path);
    }
    CKPRCI_RedMark_Load_RV reply;
    std::vector<RedMark> marks;
    std::string why;
    if (!LoadRedMarks(path, marks, why)) {
        reply.SetErrorCode(kFileFailure);
        return ReplyAnswer(reply, "red marks not loaded: " + why);
    }
    context.view.redMarks = marks;
    CStringArray titles;
    for (const RedMark& mark : marks) titles.Add(CString(mark.title));
    reply.SetTitleNames(titles);
    return ReplyAnswer(reply, "red marks loaded: " + std::to_string(marks.size()));
}

Answer Select(CKPRCI__Base& base, ViewerContext& context) {
    const CString title = static_cast<CKPRCI_RedMark_SelectedItem&>(base).GetTitle();
    CKPRCI_RedMark_SelectedItem_RV reply;
    const auto found = FindMark(context, title);
    if (found == context.view.redMarks.end()) {
        reply.SetErrorCode(kUnknownTitle);
        return ReplyAnswer(reply, "no red mark " + title.str());
    }
    reply.SetContents(CString(found->contents));
    return ReplyAnswer(reply, "red mark called up: " + title.str());
}

Answer Remove(CKPRCI__Base& base, ViewerContext& context) {
    const CString title = static_cast<CKPRCI_RedMark_RemoveItem&>(base).GetTitle();
    CKPRCI__BaseRV reply;
    const auto found = FindMark(context, title);
    if (found == context.view.redMarks.end()) {
        reply.SetErrorCode(kUnknownTitle);
        return ReplyAnswer(reply, "no red mark " + title.str());
    }
    context.view.redMarks.erase(found);
    return ReplyAnswer(reply, "red mark removed: " + title.str());
}

Answer CallStatus(CKPRCI__Base& base, ViewerContext& context) {
    auto& record = static_cast<CKPRCI_RedMark_SetStatusForCalling&>(base);
    if (record.IsReturnMode() == 1) {
        CKPRCI_RedMark_SetStatusForCalling_RV reply;
        reply.SetCallStatus(context.view.redMarkCallStatus);
        return ReplyAnswer(reply, "calling status is " + std::to_string(context.view.redMarkCallStatus));
    }
    context.view.redMarkCallStatus = record.GetCallStatus();
    return NoAnswer("calling status set to " + std::to_string(record.GetCallStatus()));
}

}  // namespace

void RegisterRedMarkHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_RedMark_SaveLoad::ClassID, SaveLoad);
    dispatcher.Register(CKPRCI_RedMark_SelectedItem::ClassID, Select);
    dispatcher.Register(CKPRCI_RedMark_RemoveItem::ClassID, Remove);
    dispatcher.Register(CKPRCI_RedMark_SetStatusForCalling::ClassID, CallStatus);
}

}  // namespace viewer
