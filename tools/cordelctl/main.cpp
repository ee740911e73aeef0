// cordelctl, the command-line tool for the documents of Cordelbox.

#include "system/system.h"
#include "tool.h"

int main(int argc, char** argv) { return static_cast<int>(RunTool(host::CommandWords(argc, argv))); }
