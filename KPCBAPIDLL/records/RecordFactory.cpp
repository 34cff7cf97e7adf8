#include "RecordFactory.h"

#include <cstdint>
#include <cstring>
#include <exception>

#include "CArchive.h"
#include "CaptureRecords.h"
#include "HighlightRecords.h"
#include "InformationRecords.h"
#include "LayerRecords.h"
#include "PolygonMergeRecords.h"
#include "RedMarkRecords.h"
#include "ViewRecords.h"

namespace {

struct RecordKind {
    int classId;
    const char* name;
    std::unique_ptr<CKPRCI__Base> (*create)();
};

template <class Record>
std::unique_ptr<CKPRCI__Base> Make() {
    return std::make_unique<Record>();
}

#define KPCB_RECORD_KIND(Record) {Record::ClassID, #Record, &Make<Record>}

// Every command record class; the ids are shared with the viewer and never renumbered.
const RecordKind kKinds[] = {
    KPCB_RECORD_KIND(CKPRCI_Explorer),
    KPCB_RECORD_KIND(CKPRCI_Highlight),
    KPCB_RECORD_KIND(CKPRCI_Highlight_Color),
    KPCB_RECORD_KIND(CKPRCI_Highlight_RefPin),
    KPCB_RECORD_KIND(CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin),
    KPCB_RECORD_KIND(CKPRCI_Highlight_ZoomNetSegment),
    KPCB_RECORD_KIND(CKPRCI_SimpleCMD),
    KPCB_RECORD_KIND(CKPRCI_ObjectOnOff),
    KPCB_RECORD_KIND(CKPRCI_ZoomArea),
    KPCB_RECORD_KIND(CKPRCI_SetWindowPosition),
    KPCB_RECORD_KIND(CKPRCI_RotateBoard),
    KPCB_RECORD_KIND(CKPRCI_VisibleLayer),
    KPCB_RECORD_KIND(CKPRCI_Information_GetReferencePlaceStatus),
    KPCB_RECORD_KIND(CKPRCI_Information_GetReferenceCountForPlace),
    KPCB_RECORD_KIND(CKPRCI_Information_GetReferenceCountForPlaceOfPart),
    KPCB_RECORD_KIND(CKPRCI_Information_GetPinPitch),
    KPCB_RECORD_KIND(CKPRCI_Information_GetCompPinCount),
    KPCB_RECORD_KIND(CKPRCI_Information_GetPinListInfoOfNet_RefPin),
    KPCB_RECORD_KIND(CKPRCI_ToolOnOff),
    KPCB_RECORD_KIND(CKPRCI_RedMark_SaveLoad),
    KPCB_RECORD_KIND(CKPRCI_RedMark_SelectedItem),
    KPCB_RECORD_KIND(CKPRCI_RedMark_RemoveItem),
    KPCB_RECORD_KIND(CKPRCI_RedMark_SetStatusForCalling),
    KPCB_RECORD_KIND(CKPRCI_Capture_ExportBitmap),
    KPCB_RECORD_KIND(CKPRCI_Export_PDBBAscii),
    KPCB_RECORD_KIND(CKPRCI_Information_SetMainTitle),
    KPCB_RECORD_KIND(CKPRCI_PolygonMerge),
};

#undef KPCB_RECORD_KIND

const RecordKind* FindKind(int classId) {
    for (const RecordKind& kind : kKinds)
        if (kind.classId == classId) return &kind;
    return nullptr;
}

}  // namespace

std::unique_ptr<CKPRCI__Base> CreateCommandRecord(int classId) {
    const RecordKind* kind = FindKind(classId);
    return kind ? kind->create() : nullptr;
}

const char* CommandRecordName(int classId) {
    const RecordKind* kind = FindKind(classId);
    return kind ? kind->name : nullptr;
}

std::unique_ptr<CKPRCI__Base> LoadCommandRecord(CMemFile& file) {
    try {
        if (file.GetLength() < 4) return nullptr;
        file.SeekToBegin();
        unsigned char idBytes[4];
        if (file.Read(idBytes, 4) != 4) return nullptr;
        const int32_t classId = static_cast<int32_t>(static_cast<uint32_t>(idBytes[0]) |
                                                     static_cast<uint32_t>(idBytes[1]) << 8 |
                                                     static_cast<uint32_t>(idBytes[2]) << 16 |
                                                     static_cast<uint32_t>(idBytes[3]) << 24);
        std::unique_ptr<CKPRCI__Base> record = CreateCommandRecord(classId);
        if (!record) return nullptr;

        file.SeekToBegin();
        CArchive ar(&file, CArchive::load, 4096);
        record->Serialize(ar);  // reads the id again and checks it
        if (ar.Remaining() != 0) return nullptr;  // trailing bytes: not one record's image
        ar.Close();
        return record;
    } catch (const std::exception&) {
        return nullptr;  // truncated or malformed image
    }
}
