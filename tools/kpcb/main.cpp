// kpcb: KPCBAPI from the command line (docs/kpcb.md).
#include <iostream>
#include <string>
#include <vector>

#include "Tool.h"

int main(int argc, char** argv) {
    kpcb::Session session;
    session.out = &std::cout;
    session.err = &std::cerr;
    kpcb::Tool tool(session);
    const int status = tool.Run(std::vector<std::string>(argv + 1, argv + argc));
    std::cout.flush();
    return status;
}
