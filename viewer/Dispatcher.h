// Turns each command record into a change of the viewer's state and, for queries,
// an answer. Each command family registers its handlers in a file of its own.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CKPRCI__Base.h"
#include "CPdb.h"
#include "ViewerState.h"

namespace viewer {

struct Answer {
    enum class Channel { None, ReplySlot, ReturnSlot };
    Channel channel = Channel::None;
    std::vector<unsigned char> bytes;  // reply slot: the frame's payload; return slot: the bare message
    std::string note;                  // what was done, for the journal
};

// The image of a reply record, ready to send as a frame on the reply slot, written
// into the buffer that KeepReplyBytes kept, if any.
Answer ReplyAnswer(CKPRCI__BaseRV& reply, std::string note);
// Keeps a sent answer's buffer for the next reply when it is the largest so far.
void KeepReplyBytes(Answer& answer);
Answer NoAnswer(std::string note);

// Everything a handler may look at or change.
struct ViewerContext {
    ViewState view;
    std::string boardPath;
    std::unique_ptr<CPdb> board;  // the loaded board; never null while serving
};

using Handler = std::function<Answer(CKPRCI__Base& record, ViewerContext& context)>;

class Dispatcher {
public:
    Dispatcher();
    void Register(int classId, Handler handler) { m_handlers[classId] = std::move(handler); }
    Answer Handle(CKPRCI__Base& record, ViewerContext& context) const;

private:
    std::map<int, Handler> m_handlers;
};

// Registration of each family's handlers.
void RegisterViewHandlers(Dispatcher& dispatcher);
void RegisterHighlightHandlers(Dispatcher& dispatcher);
void RegisterRedMarkHandlers(Dispatcher& dispatcher);
void RegisterInformationHandlers(Dispatcher& dispatcher);
void RegisterPolygonMergeHandlers(Dispatcher& dispatcher);
void RegisterCaptureHandlers(Dispatcher& dispatcher);

// The names of a string list, as standard strings.
std::vector<std::string> ToStrings(const CStringArray& list);
// "a,b,c" for the journal.
std::string Joined(const std::vector<std::string>& names);

}  // namespace viewer
