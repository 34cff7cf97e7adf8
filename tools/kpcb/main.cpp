// kpcb: KPCBAPI from the command line (docs/kpcb.md).
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "Tool.h"
#include "platform.h"

int main(int argc, char** argv) {
    // An extraction reads a whole design and builds its board, touching tens of
    // megabytes for the first time: with large pages that costs a fraction of the page
    // faults (docs/performance.md).
    if (argc >= 2 && std::strncmp(argv[1], "extract-", 8) == 0) platform::RestartWithLargeHeapPages(argv);
    kpcb::Session session;
    session.out = &std::cout;
    session.err = &std::cerr;
    kpcb::Tool tool(session);
    const int status = tool.Run(std::vector<std::string>(argv + 1, argv + argc));
    std::cout.flush();
    return status;
}
