#include "SlotNames.h"

#include <charconv>
#include <string>

namespace {
// root + "RCIMR\" + the pid in decimal (what "%s%s%d" prints), without a formatter:
// every call names two slots.
CString MakeSlotName(const char* root, int pid) {
    char digits[16];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof(digits), pid);
    std::string name(root);
    name += "RCIMR\\";
    name.append(digits, end.ptr);
    return CString(std::move(name));
}
}  // namespace

CString MakeCommandSlotName(int pid) { return MakeSlotName("\\\\.\\mailslot\\KPCB\\", pid); }
CString MakeReplySlotName(int pid) { return MakeSlotName("\\\\.\\mailslot\\KAPI\\", pid); }
CString ReturnSlotName() { return CString("\\\\.\\mailslot\\KAPI\\RETURN"); }
