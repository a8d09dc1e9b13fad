// The leak checker has to trace the process, which is not dumpable.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}
