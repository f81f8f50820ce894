/**
 * Fontconfig keeps its configuration until the process ends, and gives nothing of it back. Asked by the leak sanitizer,
 * where there is one.
 */
extern "C" __attribute__((visibility("default"), used)) const char* __lsan_default_suppressions()
{
	return "leak:libfontconfig\nleak:libpango\n";
}
