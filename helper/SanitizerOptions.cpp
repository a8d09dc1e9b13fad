#include <sys/auxv.h>
#include <sys/syscall.h>
#include <unistd.h>

// The sanitizers' library asks this before it reads the options in its caller's environment, which name files
// to write. So a set-id program ends here, before main, and calls nothing that the library has its own of.
extern "C" const char* __asan_default_options();
extern "C" __attribute__((no_sanitize("address", "undefined"))) const char* __asan_default_options()
{
    if (getauxval(AT_SECURE) != 0)
        syscall(SYS_exit_group, 1);
    // The leak checker has to trace the process, which is not dumpable.
    return "detect_leaks=0";
}
