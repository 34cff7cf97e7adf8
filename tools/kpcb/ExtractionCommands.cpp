// Design extraction: ECAD designs into board database files, inside this process
// through the importer plug-ins; no viewer is involved. Each subcommand calls the C
// form of its function (wide strings), or with --cpp the C++ one (CString).
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
            return c.Fail("3: the importer gave no board database, or its plug-in is missing (see " + log + ")",
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
}

}  // namespace kpcb
