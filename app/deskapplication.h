// The desk program: options, checks before a window opens, services, window, exit.
#pragma once

namespace desk {

// main() of optdesk. Bad input ends with a message on stderr and a non-zero exit.
int runDesk(int argc, char** argv);

}  // namespace desk
