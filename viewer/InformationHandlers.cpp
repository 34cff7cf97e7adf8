// Information queries. Answers from the board's contents are not served by this
// build: every query is answered with error code 0 and zero values.
#include "Dispatcher.h"
#include "InformationRecords.h"

namespace viewer {
namespace {

template <class Reply>
Answer Zeros(CKPRCI__Base& base, ViewerContext&) {
    Reply reply;
    return ReplyAnswer(reply, std::string("zero answer to ") + std::to_string(base.GetClassID()));
}

}  // namespace

void RegisterInformationHandlers(Dispatcher& dispatcher) {
    dispatcher.Register(CKPRCI_Information_GetReferencePlaceStatus::ClassID,
                        Zeros<CKPRCI_Information_GetReferencePlaceStatus_RV>);
    dispatcher.Register(CKPRCI_Information_GetReferenceCountForPlace::ClassID,
                        Zeros<CKPRCI_Information_GetReferenceCountForPlace_RV>);
    dispatcher.Register(CKPRCI_Information_GetReferenceCountForPlaceOfPart::ClassID,
                        Zeros<CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV>);
    dispatcher.Register(CKPRCI_Information_GetPinPitch::ClassID, Zeros<CKPRCI_Information_GetPinPitch_RV>);
    dispatcher.Register(CKPRCI_Information_GetCompPinCount::ClassID, Zeros<CKPRCI_Information_GetCompPinCount_RV>);
    dispatcher.Register(CKPRCI_Information_GetPinListInfoOfNet_RefPin::ClassID,
                        Zeros<CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV>);
}

}  // namespace viewer
