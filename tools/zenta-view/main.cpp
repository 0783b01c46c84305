// zenta-view: results of zenta for people.

#include "CommandLine.h"

int main(int argc, char** argv) { return view::RunCommand(argc, argv); }
