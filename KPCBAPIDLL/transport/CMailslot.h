// One end of a mailslot and the frame that travels through it: a 4-byte
// little-endian length message, then (unless the length is 0) the payload message.
#pragma once

#include "CMemFile.h"
#include "CString.h"
#include "platform.h"

class CKPRCI__BaseRV;

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
    // Receives one frame into the file, sized as its length message announces; 1 on success.
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

// Reads the next message whole and takes its first 4 bytes as value (a hello or an
// acknowledgement; bytes after them are ignored). 0 when none could be read or it is
// shorter than 4 bytes; value is then untouched.
int ReceiveLeadingInt(CMailslot& slot, int* value);

// Receives one frame on slot into file and loads record from it. The file is
// deleted on every path. 0 when no frame came, it is shorter than 4 bytes, or it is
// too short for the record's fields (the record may then be partly filled). Bytes
// after the fields are ignored.
int ReceiveRecord(CMailslot& slot, CMemFile* file, CKPRCI__BaseRV& record);

// Loads record from the start of file (a received payload): 1 when the file holds
// at least 4 bytes and every field of the record; never throws.
int LoadReplyRecord(CMemFile& file, CKPRCI__BaseRV& record);
