#include "SlotNames.h"

namespace {
CString MakeSlotName(const char* root, int pid) {
    CString name;
    name.Format("%s%s%d", root, "RCIMR\\", pid);
    return name;
}
}  // namespace

CString MakeCommandSlotName(int pid) { return MakeSlotName("\\\\.\\mailslot\\KPCB\\", pid); }
CString MakeReplySlotName(int pid) { return MakeSlotName("\\\\.\\mailslot\\KAPI\\", pid); }
CString ReturnSlotName() { return CString("\\\\.\\mailslot\\KAPI\\RETURN"); }
