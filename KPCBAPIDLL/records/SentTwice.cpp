#include "SentTwice.h"

#include "HighlightRecords.h"
#include "RedMarkRecords.h"

bool SentTwice(const CKPRCI__Base& record) {
    switch (record.GetClassID()) {
    case CKPRCI_Highlight::ClassID:
    case CKPRCI_Highlight_ZoomHighlightForSection_NetRefPin::ClassID:
        return true;
    case CKPRCI_RedMark_SetStatusForCalling::ClassID:
        return static_cast<const CKPRCI_RedMark_SetStatusForCalling&>(record).IsReturnMode() == 1;
    default:
        return false;
    }
}
