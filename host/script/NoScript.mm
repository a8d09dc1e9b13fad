#include "Script.h"

#include <cstdio>

int openScript(const std::string&)
{
    fprintf(stderr, "printdialog: --script: only a development build can be driven by a script\n");
    return -1;
}

void driveByScript(DialogController*, int) {}
