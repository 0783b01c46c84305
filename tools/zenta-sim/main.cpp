#include "CommandLine.h"

int main(int argc, char** argv) { return sim::RunCommand(argc, argv); }
