// zenta-export: results of zenta for other programs.

#include "CommandLine.h"

int main(int argc, char** argv) { return exports::RunCommand(argc, argv); }
