/**
 * Fontconfig and D-Bus keep what they have made until the process ends. Asked by the leak sanitizer, where there is
 * one.
 */
extern "C" __attribute__((visibility("default"), used)) const char* __lsan_default_suppressions()
{
	return "leak:libfontconfig\nleak:libpango\nleak:libdbus\n";
}
