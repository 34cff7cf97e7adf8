// Information queries, answered from the loaded board (the rules are in
// BoardQueries.h). A value that the library hands to its caller carries the error
// code itself when there is no answer, since the library passes values and drops
// the error code of these replies.
#include "BoardQueries.h"
#include "Dispatcher.h"
#include "InformationRecords.h"

namespace viewer {
namespace {

int ErrorOf(double value) { return value < 0 ? static_cast<int>(value) : 0; }

// The highlight flag of a query: the components it reports are highlighted as a
// named highlight of components would, in the current colour.
void HighlightComponents(ViewerContext& context, const std::vector<std::string>& references) {
    if (references.empty()) return;
    Highlight h;
    h.objectKind = board::Components;
    h.names = references;
    h.color = context.view.currentHighlightColor;
    context.view.highlights.push_back(h);
}

Answer PlaceStatus(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetReferencePlaceStatus&>(base);
    const std::string reference = request.GetRefName().str();
    const int status = board::PlaceStatus(*context.board, reference);
    if (request.IsHighlight() && status != board::kUnknownName) HighlightComponents(context, {reference});
    CKPRCI_Information_GetReferencePlaceStatus_RV reply;
    reply.SetErrorCode(ErrorOf(status));
    reply.SetStatusOfPlace(status);
    return ReplyAnswer(reply, "place status of " + reference + ": " + std::to_string(status));
}

template <class Reply>
Answer Counts(const board::PlaceCounts& counts, int highlight, ViewerContext& context, const std::string& what) {
    if (highlight) HighlightComponents(context, counts.placed);
    Reply reply;
    reply.SetErrorCode(counts.unknown ? board::kUnknownName : 0);
    reply.SetTopCount(counts.top);
    reply.SetBtmCount(counts.bottom);
    reply.SetElseCount(counts.other);
    return ReplyAnswer(reply, what + ": top " + std::to_string(counts.top) + " bottom " +
                                  std::to_string(counts.bottom) + " other " + std::to_string(counts.other) +
                                  " (unknown " + std::to_string(counts.unknown) + ")");
}

Answer ReferenceCounts(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetReferenceCountForPlace&>(base);
    const std::vector<std::string> names = ToStrings(request.GetRefNames());
    return Counts<CKPRCI_Information_GetReferenceCountForPlace_RV>(board::CountReferences(*context.board, names),
                                                                   request.IsHighlight(), context,
                                                                   "placement of " + Joined(names));
}

Answer PartCounts(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetReferenceCountForPlaceOfPart&>(base);
    const std::vector<std::string> names = ToStrings(request.GetPartNames());
    return Counts<CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV>(
        board::CountPartComponents(*context.board, names), request.IsHighlight(), context,
        "placement of parts " + Joined(names));
}

Answer PinPitch(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetPinPitch&>(base);
    const std::string reference = request.GetRefName().str();
    const double pitch = board::PinPitch(*context.board, request.GetFunctionType(), reference, request.GetUnit());
    CKPRCI_Information_GetPinPitch_RV reply;
    reply.SetErrorCode(ErrorOf(pitch));
    reply.SetPinPitch(pitch);
    return ReplyAnswer(reply, "pitch " + std::to_string(request.GetFunctionType()) + " of " + reference + " unit " +
                                  std::to_string(request.GetUnit()) + ": " + std::to_string(pitch));
}

Answer PinCount(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetCompPinCount&>(base);
    const std::string name = request.GetObjectName().str();
    int count = board::kBadArgument;
    if (request.GetFunctionType() == 0) count = board::PinCountOfReference(*context.board, name);
    if (request.GetFunctionType() == 1) count = board::PinCountOfPart(*context.board, name);
    CKPRCI_Information_GetCompPinCount_RV reply;
    reply.SetErrorCode(ErrorOf(count));
    reply.SetPinCount(count);
    return ReplyAnswer(reply, "pin count " + std::to_string(request.GetFunctionType()) + " of " + name + ": " +
                                  std::to_string(count));
}

Answer NetPins(CKPRCI__Base& base, ViewerContext& context) {
    auto& request = static_cast<CKPRCI_Information_GetPinListInfoOfNet_RefPin&>(base);
    const std::string reference = request.GetRefName().str(), pin = request.GetPinName().str();
    std::string net;
    std::vector<std::string> pins;
    const int error = board::NetPinsOfPin(*context.board, reference, pin, net, pins);
    CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV reply;
    reply.SetErrorCode(error);
    reply.SetNetName(CString(net.c_str()));
    CStringArray list;
    for (const std::string& p : pins) list.Add(CString(p.c_str()));
    reply.SetRefPinNames(list);
    return ReplyAnswer(reply, "net of " + reference + "-" + pin + ": " +
                                  (error ? std::to_string(error) : net + " " + Joined(pins)));
}

}  // namespace

void RegisterInformationHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_Information_GetReferencePlaceStatus::ClassID, PlaceStatus);
    dispatcher.Register(CKPRCI_Information_GetReferenceCountForPlace::ClassID, ReferenceCounts);
    dispatcher.Register(CKPRCI_Information_GetReferenceCountForPlaceOfPart::ClassID, PartCounts);
    dispatcher.Register(CKPRCI_Information_GetPinPitch::ClassID, PinPitch);
    dispatcher.Register(CKPRCI_Information_GetCompPinCount::ClassID, PinCount);
    dispatcher.Register(CKPRCI_Information_GetPinListInfoOfNet_RefPin::ClassID, NetPins);
}

}  // namespace viewer
