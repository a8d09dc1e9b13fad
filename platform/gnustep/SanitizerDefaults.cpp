// Linked into every sanitised program that uses the toolkit. Leaks of the toolkit and of the libraries below
// it are none of ours to mend: a block counts as theirs when one of the three innermost calls to its
// allocation is. Looked at further out, all would be theirs, since the toolkit calls our code too. To see
// more of a leak's calls: ASAN_OPTIONS=malloc_context_size=30.

extern "C" {

const char* __asan_default_options();
const char* __asan_default_options()
{
    return "malloc_context_size=4";
}

const char* __lsan_default_options();
const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions()
{
    return "leak:libgnustep-base\nleak:libgnustep-gui\nleak:libgnustep-cairo\nleak:libobjc\n"
           "leak:libfontconfig\nleak:libcairo\nleak:libX11\nleak:libxcb\nleak:libMagickCore\n"
           "leak:libdbus\nleak:ld-linux\n";
}

} // extern "C"
