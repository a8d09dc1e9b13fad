#include "Commands.h"
#include "Process.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
// The leak checker has to trace the process, which is not dumpable.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
#endif
#endif

int main(int argc, char** argv)
{
    return settleProcess() ? runHelper(argc, argv) : 1;
}
