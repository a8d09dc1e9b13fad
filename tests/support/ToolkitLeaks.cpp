// What the toolkit and the libraries below it keep for the life of a process, in tests that use it.
#if __has_feature(address_sanitizer)
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libgnustep-base\nleak:libgnustep-gui\nleak:libgnustep-cairo\nleak:libobjc\n"
           "leak:libfontconfig\nleak:libcairo\nleak:libX11\nleak:libxcb\nleak:libMagickCore\n"
           "leak:libdbus\nleak:ld-linux\n";
}
#endif
