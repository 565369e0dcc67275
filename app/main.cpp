#include "app/deskapplication.h"

int main(int argc, char** argv) { return desk::runDesk(argc, argv); }
