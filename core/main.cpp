#include "core/ptz_cntl.h"

int main(int argc, char** argv) { return PtzCntlMain(argc, argv); }
