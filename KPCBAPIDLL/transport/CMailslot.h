// One end of a mailslot and the writing of the frame that travels through it: a
// 4-byte little-endian length message, then (unless the length is 0) the payload
// message. Frames are read by FrameReader.h.
#pragma once

#include "CMemFile.h"
#include "CString.h"
#include "platform.h"

class CMailslot {
public:
    // isClient non-zero: the write side, which opens a slot another process created;
    // zero: the read side, which creates the slot. Nothing is opened yet.
    CMailslot(const int& isClient, const CString& name);
    // Closes the handle unless its open failed.
    virtual ~CMailslot();
    CMailslot(const CMailslot&) = delete;
    CMailslot& operator=(const CMailslot&) = delete;

    // Opens (write side) or creates (read side) the slot; 1 when it is open.
    int Open();
    // Writes count bytes as one message; 1 on success. Zero bytes: logs
    // "Send Fail data : 0" and succeeds without writing.
    int WriteBytes(const void* buffer, unsigned int count);
    // Reads up to count bytes; with once set a single read, else reads until count
    // bytes are in. 1 on success.
    int ReadBytes(void* buffer, unsigned int count, int once);
    // Sends the whole file as one frame (WriteFrame); 1 on success.
    int SendFrame(CFile& file);
    // Receives one frame into the file, sized as its length message announces (a
    // shorter payload leaves zeros after it); 1 on success. Waits as the slot's reads
    // do. The frame decoder's rules apply (FrameReader.h).
    int ReceiveFrame(CMemFile& file);

    void* GetHandle() const { return handle; }
    const CString& GetName() const { return name; }

private:
    int isClient;
    CString name;
    platform::SlotHandle handle;
};

// Writes one frame to an open write side: the 4-byte length, then the payload unless
// it is empty, both in one go where the system allows. A write that finds no room
// within the slot's send wait fails and logs "Send Fail data : %d". 1 on success.
int WriteFrame(CMailslot& slot, const void* payload, uint32_t size);

// Opens the write side of a slot that may appear a little later: retried for up to
// openWaitMs. 1 when open.
int OpenWhenReady(CMailslot& slot, int openWaitMs);
// Writes one frame to the slot of that name, opened with OpenWhenReady. 1 on success.
int SendFrameTo(const CString& slotName, const void* payload, uint32_t size, int openWaitMs);
// Writes one bare message (no length message) to the slot of that name. 1 on success.
int SendMessageTo(const CString& slotName, const void* data, uint32_t size, int openWaitMs);
