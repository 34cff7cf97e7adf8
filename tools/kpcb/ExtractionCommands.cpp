// Design extraction: ECAD designs into board database files, inside this process
// through the importer plug-ins; no viewer is involved. Each subcommand calls the C
// form of its function (wide strings), or with --cpp the C++ one (CString);
// extract-odb and extract-ipc2581 call ExtractPdbbFromArgumentList.
#include "KPCBAPI.h"
#include "KPCBAPIExtract.h"
#include "Text.h"
#include "Tool.h"
#include "platform.h"

namespace kpcb {

namespace {

int FinishExtraction(const Command& c, int result) {
    const std::string log = platform::DataDirectory() + platform::PathSeparator() + "Log" +
                            platform::PathSeparator() + "KAPI.log";
    switch (result) {
        case 0: return kExitOk;
        case 2: return c.Fail("2: the arguments were refused (the API log " + log + " says why)", kExitRefused);
        case 3:
            return c.Fail("3: the importer gave no board database, or there is no importer (see " + log + ")",
                          kExitNoBoard);
        case 4: return c.Fail("4: the board database could not be saved", kExitSaveFailed);
        default: return c.Fail(std::to_string(result) + ": an unexpected extraction result", kExitOther);
    }
}

// One letter argument.
CLI::Option* AddLetter(CLI::App* parser, const std::string& name, char& letter, const std::string& help) {
    return parser
        ->add_option_function<std::string>(
            name, [&letter](const std::string& text) { letter = text[0]; }, help)
        ->check([](const std::string& text) { return text.size() == 1 ? std::string() : "one letter, not " + text; });
}

// --cpp: the C++ entry point rather than the C one.
bool& AddCppFlag(Command& c) {
    bool& cpp = c.Hold<bool>(false);
    c.parser()->add_flag("--cpp", cpp, "call the C++ function (CString arguments) rather than its C form");
    return cpp;
}

// ExtractPdbbFromArgumentList on args (the caller tag first).
int ExtractFromArgumentList(const Command& c, const std::vector<std::string>& args) {
    std::vector<const char*> pointers;
    for (const std::string& arg : args) pointers.push_back(arg.c_str());
    return FinishExtraction(c, ExtractPdbbFromArgumentList(static_cast<int>(pointers.size()), pointers.data()));
}

}  // namespace

void AddExtractionCommands(Tool& tool) {
    tool.Group("Design extraction");
    {
        Command& c = tool.Add("extract-allegro", "Turns an Allegro design into a board database "
                                                 "(KPCB_ExtractPdbbFromAllegro; --cpp: ExtractPdbbFromAllegro).");
        bool& cpp = AddCppFlag(c);
        struct Allegro {
            std::string saveFolder, design, extra1, extra2;
            char kind = 'b';
        };
        Allegro& a = c.Hold<Allegro>();
        c.parser()->add_option("SAVE_FOLDER", a.saveFolder, "where <design name>.pdbb is written")->required();
        c.parser()->add_option("DESIGN_FILE", a.design, "the design file")->required();
        AddLetter(c.parser(), "KIND", a.kind,
                  "a: .brd, .pad, .rte and .sym files beside the design; b: one .brd file")
            ->required();
        c.parser()->add_option("EXTRA1", a.extra1, "passed to the importer (kind b)");
        c.parser()->add_option("EXTRA2", a.extra2, "passed to the importer (kind b)");
        c.Does([&c, &a, &cpp] {
            if (cpp) {
                return FinishExtraction(c, ExtractPdbbFromAllegro(CString(a.saveFolder.c_str()),
                                                                  CString(a.design.c_str()), a.kind,
                                                                  CString(a.extra1.c_str()), CString(a.extra2.c_str())));
            }
            return FinishExtraction(c, KPCB_ExtractPdbbFromAllegro(Wide(a.saveFolder).c_str(), Wide(a.design).c_str(),
                                                                   a.kind, Wide(a.extra1).c_str(),
                                                                   Wide(a.extra2).c_str()));
        });
    }
    {
        Command& c = tool.Add("extract-board-designer",
                              "Turns a Zuken Board Designer design into a board database "
                              "(KPCB_ExtractPdbbFromBoardDesigner; --cpp: ExtractPdbbFromBoardDesigner).");
        bool& cpp = AddCppFlag(c);
        struct BoardDesigner {
            std::string saveFolder, design;
            char first = 'a', second = 's';
            std::string options[4];
        };
        BoardDesigner& b = c.Hold<BoardDesigner>();
        c.parser()->add_option("SAVE_FOLDER", b.saveFolder, "where <design name>.pdbb is written")->required();
        c.parser()->add_option("DESIGN", b.design, "the design")->required();
        AddLetter(c.parser(), "FIRST", b.first, "a or b")->required();
        AddLetter(c.parser(), "SECOND", b.second, "s or a")->required();
        for (int i = 0; i < 4; ++i) {
            c.parser()->add_option("OPTION" + std::to_string(i + 1), b.options[i],
                                   "/VD:<path>, /UH:<path>, /ZUKENROOT:<path>, /UH_POLYGON or /1");
        }
        c.Does([&c, &b, &cpp] {
            if (cpp) {
                return FinishExtraction(
                    c, ExtractPdbbFromBoardDesigner(CString(b.saveFolder.c_str()), CString(b.design.c_str()), b.first,
                                                    b.second, CString(b.options[0].c_str()),
                                                    CString(b.options[1].c_str()), CString(b.options[2].c_str()),
                                                    CString(b.options[3].c_str())));
            }
            return FinishExtraction(
                c, KPCB_ExtractPdbbFromBoardDesigner(Wide(b.saveFolder).c_str(), Wide(b.design).c_str(), b.first,
                                                     b.second, Wide(b.options[0]).c_str(), Wide(b.options[1]).c_str(),
                                                     Wide(b.options[2]).c_str(), Wide(b.options[3]).c_str()));
        });
    }
    {
        Command& c = tool.Add("extract-mentor", "Turns a Mentor BoardStation design into a board database "
                                                "(KPCB_ExtractPdbbFromMentor; --cpp: ExtractPdbbFromMentor).");
        bool& cpp = AddCppFlag(c);
        struct Mentor {
            std::string output, folder, unused;
            int flag = 0;
        };
        Mentor& m = c.Hold<Mentor>();
        c.parser()->add_option("OUTPUT_FILE", m.output, "its folder and name (without extension) name the .pdbb")
            ->required();
        c.parser()->add_option("DESIGN_FOLDER", m.folder, "the design folder")->required();
        c.parser()->add_option("UNUSED", m.unused, "accepted and not used");
        c.parser()->add_option("--flag", m.flag, "non-zero asks for the /A read mode")->capture_default_str();
        c.Does([&c, &m, &cpp] {
            if (cpp) {
                return FinishExtraction(c, ExtractPdbbFromMentor(CString(m.output.c_str()), CString(m.folder.c_str()),
                                                                 m.flag, CString(m.unused.c_str())));
            }
            return FinishExtraction(c, KPCB_ExtractPdbbFromMentor(Wide(m.output).c_str(), Wide(m.folder).c_str(),
                                                                  m.flag, Wide(m.unused).c_str()));
        });
    }
    {
        Command& c = tool.Add("extract-zuken", "Turns a Zuken CR5000 PWS design into a board database "
                                               "(KPCB_ExtractPdbbFromZuken; --cpp: ExtractPdbbFromZuken).");
        bool& cpp = AddCppFlag(c);
        struct Zuken {
            std::string output, design, zls;
            char letter = 'a';
        };
        Zuken& z = c.Hold<Zuken>();
        c.parser()->add_option("OUTPUT_FILE", z.output, "its folder receives <design name>.pdbb")->required();
        c.parser()->add_option("DESIGN", z.design, "the design")->required();
        AddLetter(c.parser(), "LETTER", z.letter, "the read mode: a or w")->required();
        c.parser()->add_option("ZLS_FILE", z.zls, "passed on only when that file exists");
        c.Does([&c, &z, &cpp] {
            if (cpp) {
                return FinishExtraction(c, ExtractPdbbFromZuken(CString(z.output.c_str()), CString(z.design.c_str()),
                                                                z.letter, CString(z.zls.c_str())));
            }
            return FinishExtraction(c, KPCB_ExtractPdbbFromZuken(Wide(z.output).c_str(), Wide(z.design).c_str(),
                                                                 z.letter, Wide(z.zls).c_str()));
        });
    }
    {
        Command& c = tool.Add("extract-odb", "Turns an ODB++ job (folder or archive) into <SAVE_FOLDER>/<NAME>.pdbb "
                                             "(ExtractPdbbFromArgumentList with /ODB).");
        struct Odb {
            std::string job, saveFolder, name, step, unit, layers, drillToVia;
            int threads = 0;
            bool skipMisc = false;
            std::vector<std::string> switches;
        };
        Odb& o = c.Hold<Odb>();
        c.parser()->add_option("JOB", o.job, "the ODB++ job: a folder, .tgz, .zip or .tar")->required();
        c.parser()->add_option("SAVE_FOLDER", o.saveFolder, "where <NAME>.pdbb is written (created if missing)")
            ->required();
        c.parser()->add_option("NAME", o.name, "the board database's name, without .pdbb")->required();
        c.parser()->add_option("SWITCHES", o.switches, "further switches passed as given, such as /S:pcb");
        c.parser()->add_option("--step", o.step, "the step to read (/S:); default: the job's first step");
        c.parser()->add_option("--unit", o.unit, "/U: save unit, accepted and checked; the file is in mm")
            ->check(CLI::IsMember({"mm", "inch", "mil"}));
        c.parser()->add_option("--layers", o.layers, "only these matrix layers, comma-separated (/LAY_FILTER:)");
        c.parser()->add_option("--threads", o.threads, "layers read in parallel (/THREAD:)");
        c.parser()->add_flag("--skip-misc", o.skipMisc, "layers of MISC context are not read (/SKIP_MISC)");
        c.parser()->add_option("--drill-to-via", o.drillToVia, "yes: a hole at no pin becomes a via (/DRILL_TO_VIA:)")
            ->check(CLI::IsMember({"yes", "no"}));
        c.Does([&c, &o] {
            std::vector<std::string> args{"From_KAPI", "/ODB", o.job, o.saveFolder, o.name};
            if (!o.step.empty()) args.push_back("/S:" + o.step);
            if (!o.unit.empty()) args.push_back("/U:" + o.unit);
            if (!o.layers.empty()) args.push_back("/LAY_FILTER:" + o.layers);
            if (o.threads > 0) args.push_back("/THREAD:" + std::to_string(o.threads));
            if (o.skipMisc) args.push_back("/SKIP_MISC");
            if (!o.drillToVia.empty()) args.push_back("/DRILL_TO_VIA:" + o.drillToVia);
            args.insert(args.end(), o.switches.begin(), o.switches.end());
            return ExtractFromArgumentList(c, args);
        });
    }
    {
        Command& c = tool.Add("extract-ipc2581", "Turns an IPC-2581 file into <SAVE_FOLDER>/<NAME>.pdbb "
                                                 "(ExtractPdbbFromArgumentList with /IPC).");
        struct Ipc2581 {
            std::string file, saveFolder, name;
        };
        Ipc2581& i = c.Hold<Ipc2581>();
        c.parser()->add_option("FILE", i.file, "the IPC-2581 file (revision B or C)")->required();
        c.parser()->add_option("SAVE_FOLDER", i.saveFolder, "where <NAME>.pdbb is written (it must exist)")
            ->required();
        c.parser()->add_option("NAME", i.name, "the board database's name, without .pdbb")->required();
        c.Does([&c, &i] { return ExtractFromArgumentList(c, {"From_KAPI", "/IPC", i.file, i.saveFolder, i.name}); });
    }
}

}  // namespace kpcb
