// Slots for the transport tests: a unique name per use, and a slot opened at both ends.
#pragma once

#include <gtest/gtest.h>

#include "CMailslot.h"
#include "platform.h"

namespace transport_test {

inline CString UniqueSlotName(const char* tag) {
    static int counter = 0;
    CString name;
    name.Format("\\\\.\\mailslot\\KPCBTEST\\%s\\%d\\%d", tag, platform::CurrentProcessId(), ++counter);
    return name;
}

struct SlotPair {
    explicit SlotPair(const char* tag) : name(UniqueSlotName(tag)), reader(0, name), writer(1, name) {
        EXPECT_EQ(reader.Open(), 1);
        EXPECT_EQ(writer.Open(), 1);
    }
    CString name;
    CMailslot reader;
    CMailslot writer;
};

}  // namespace transport_test
