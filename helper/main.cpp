#include "Commands.h"
#include "Process.h"

int main(int argc, char** argv)
{
    return settleProcess() ? runHelper(argc, argv) : 1;
}
