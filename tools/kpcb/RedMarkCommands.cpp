// Red marks: save, load, call up, remove; the calling status.
#include "KPCBAPI.h"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

namespace {

const Meanings kTitleMeanings = {{KPCB_ERR_200, "no red mark has that title"}};

struct FileAndForm {
    std::string path;
    bool text = false;
};

FileAndForm& AddFile(Command& c) {
    FileAndForm& f = c.Hold<FileAndForm>();
    c.parser()->add_option("PATH", f.path, "the red-mark file")->required();
    c.parser()->add_flag("--text,-t", f.text, "the text form rather than the binary one");
    return f;
}

}  // namespace

void AddRedMarkCommands(Tool& tool) {
    tool.Group("Red marks");
    {
        Command& c = tool.AddForViewer("redmark-save", "Asks the viewer to save its red marks (KPCB_RedMarkSave).");
        FileAndForm& f = AddFile(c);
        c.Does([&c, &f] { return c.Finish(KPCB_RedMarkSave(c.Pid(), Wide(Absolute(f.path)).c_str(), f.text ? 1 : 0)); });
    }
    {
        Command& c = tool.AddForViewer("redmark-load", "Loads red marks from a file and prints their titles, one per "
                                                       "line (KPCB_RedMarkLoad).");
        FileAndForm& f = AddFile(c);
        c.Does([&c, &f] {
            LibraryString titles;
            const int status = KPCB_RedMarkLoad(c.Pid(), Wide(Absolute(f.path)).c_str(), &titles.text, L"\n", f.text ? 1 : 0);
            if (status != KPCB_OK) {
                return c.Finish(status, {{KPCB_ERR_200, "the red-mark file does not exist"}});
            }
            PrintLines(c.out(), Narrow(titles.text));
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("redmark-call", "Calls up a red mark and prints its contents "
                                                       "(KPCB_CallSelectedItemFromRedMark).");
        auto& title = c.Hold<std::string>();
        c.parser()->add_option("TITLE", title, "the red mark's title")->required();
        c.Does([&c, &title] {
            LibraryString contents;
            const int status = KPCB_CallSelectedItemFromRedMark(c.Pid(), Wide(title).c_str(), &contents.text);
            if (status != KPCB_OK) return c.Finish(status, kTitleMeanings);
            PrintLines(c.out(), Narrow(contents.text));
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("redmark-remove", "Removes a red mark (KPCB_RemoveItemFromRedMarkList).");
        auto& title = c.Hold<std::string>();
        c.parser()->add_option("TITLE", title, "the red mark's title")->required();
        c.Does([&c, &title] {
            return c.Finish(KPCB_RemoveItemFromRedMarkList(c.Pid(), Wide(title).c_str()), kTitleMeanings);
        });
    }
    {
        Command& c = tool.AddForViewer("redmark-set-status", "Sets the viewer's calling status for red marks "
                                                             "(KPCB_SetStatusForCallingRedMark).");
        auto& status = c.Hold<int>(0);
        c.parser()->add_option("STATUS", status, "the status value")->required();
        c.Does([&c, &status] { return c.Finish(KPCB_SetStatusForCallingRedMark(c.Pid(), status)); });
    }
    {
        Command& c = tool.AddForViewer("redmark-get-status", "Prints the viewer's calling status for red marks "
                                                             "(KPCB_GetStatusForCallingRedMark).");
        c.Does([&c] {
            int value = 0;
            const int status = KPCB_GetStatusForCallingRedMark(c.Pid(), &value);
            if (status != KPCB_OK) return c.Finish(status);
            c.out() << value << '\n';
            return kExitOk;
        });
    }
}

}  // namespace kpcb
