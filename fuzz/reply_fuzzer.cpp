// Client side: any bytes received as a reply, loaded as any reply class.
// The first byte chooses the class; the rest is the payload.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "FrameReader.h"
#include "InformationRecords.h"
#include "PolygonMergeRecords.h"
#include "RedMarkRecords.h"

namespace {
std::unique_ptr<CKPRCI__BaseRV> MakeReply(uint8_t which) {
    switch (which % 11) {
    case 0: return std::make_unique<CKPRCI__BaseRV>();
    case 1: return std::make_unique<CKPRCI_Information_GetCompPinCount_RV>();
    case 2: return std::make_unique<CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV>();
    case 3: return std::make_unique<CKPRCI_Information_GetPinPitch_RV>();
    case 4: return std::make_unique<CKPRCI_Information_GetReferenceCountForPlace_RV>();
    case 5: return std::make_unique<CKPRCI_Information_GetReferenceCountForPlaceOfPart_RV>();
    case 6: return std::make_unique<CKPRCI_Information_GetReferencePlaceStatus_RV>();
    case 7: return std::make_unique<CKPRCI_PolygonMerge_RV>();
    case 8: return std::make_unique<CKPRCI_RedMark_Load_RV>();
    case 9: return std::make_unique<CKPRCI_RedMark_SelectedItem_RV>();
    default: return std::make_unique<CKPRCI_RedMark_SetStatusForCalling_RV>();
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    std::unique_ptr<CKPRCI__BaseRV> reply = MakeReply(data[0]);
    CMemFile file(1024);
    file.Write(data + 1, static_cast<UINT>(size - 1));
    if (LoadReplyRecord(file, *reply)) {
        // What the exported functions do with a good reply: join the lists.
        if (auto* load = dynamic_cast<CKPRCI_RedMark_Load_RV*>(reply.get())) (void)load->GetTitleNames(",");
        if (auto* pins = dynamic_cast<CKPRCI_Information_GetPinListInfoOfNet_RefPin_RV*>(reply.get()))
            (void)pins->GetRefPinNames(";");
    }
    return 0;
}
