// Capture, text export and the explorer.
#include "KPCBAPI.hpp"
#include "Text.h"
#include "Tool.h"

namespace kpcb {

void AddCaptureCommands(Tool& tool) {
    tool.Group("Capture, export, explorer");
    {
        Command& c = tool.AddForViewer("capture", "Makes the viewer save its current picture as a bitmap file; "
                                                  "prints the file's path (KPCB_ExportBitmap_CurrentImage).");
        c.parser()->footer("The request itself is one-way: kpcb then asks the viewer a read-only question "
                           "(KPCB_GetStatusForCallingRedMark), so the picture is written when kpcb returns.");
        struct Capture {
            std::string path;
            bool noWait = false;
        };
        Capture& a = c.Hold<Capture>();
        c.parser()->add_option("PATH", a.path, "the bitmap file (.bmp)")->required();
        c.parser()->add_flag("--no-wait", a.noWait, "return as soon as the request is sent");
        c.Does([&c, &a] {
            const int pid = c.Pid();
            const std::string path = Absolute(a.path);
            int status = KPCB_ExportBitmap_CurrentImage(pid, path.c_str());
            if (status == KPCB_OK && !a.noWait) {
                int ignored = 0;
                status = KPCB_GetStatusForCallingRedMark(pid, &ignored);
            }
            if (status != KPCB_OK) return c.Finish(status);
            c.out() << path << '\n';
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("export-text", "Asks the viewer to write the board's text form to a file and "
                                                      "waits for it; prints the file's path (KPCB_ExportPDBAscii).");
        auto& path = c.Hold<std::string>();
        c.parser()->add_option("PATH", path, "the text file")->required();
        c.Does([&c, &path] {
            const std::string absolute = Absolute(path);
            const int status = KPCB_ExportPDBAscii(c.Pid(), absolute.c_str());
            if (status != KPCB_OK) {
                return c.Finish(status, {{KPCB_SLOT_UNAVAILABLE,
                                          "no viewer serves this process id (this call does not test whether it "
                                          "runs), or another call is waiting for its answer"}});
            }
            c.out() << absolute << '\n';
            return kExitOk;
        });
    }
    {
        Command& c = tool.AddForViewer("explorer", "Opens the viewer's explorer on the objects listed in a file, and "
                                                   "waits for its acknowledgement (KPCB_Explorer).");
        struct Explorer {
            int type = 0;
            std::string file;
        };
        Explorer& e = c.Hold<Explorer>();
        c.parser()
            ->add_option("TYPE", e.type, "selection type: 0, 1 or 2, or nets, components, pins")
            ->required()
            ->transform(ObjectKindNames());
        c.parser()->add_option("LIST_FILE", e.file, "the list of objects, one name per line")->required();
        c.Does([&c, &e] {
            return c.Finish(KPCB_Explorer(c.Pid(), e.type, CString(Absolute(e.file).c_str())),
                            {{KPCB_ERR_200, "the selection type is not 0, 1 or 2"},
                             {KPCB_ERR_201, "the list file does not exist"}});
        });
    }
}

}  // namespace kpcb
