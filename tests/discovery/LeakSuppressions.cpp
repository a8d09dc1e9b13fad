// net-snmp's argument parser leaves a copy of the community behind at each call: the walker calls it once, a
// test often.
#if __has_feature(address_sanitizer)
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:netsnmp_parse_args\n";
}
#endif
