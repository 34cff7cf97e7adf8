// Names of the slots that the library and a viewer share.
#pragma once

#include "CString.h"

// "\\.\mailslot\KPCB\RCIMR\<pid>": the viewer's command slot.
CString MakeCommandSlotName(int pid);
// "\\.\mailslot\KAPI\RCIMR\<pid>": the library's reply slot for that viewer.
CString MakeReplySlotName(int pid);
// "\\.\mailslot\KAPI\RETURN": the launch hello and the explorer acknowledgement.
CString ReturnSlotName();
