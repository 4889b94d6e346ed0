// Part of every program that draws, in sanitizer builds alone.

// fontconfig keeps its patterns as offsets, which the leak checker does not take for pointers, so
// that what it holds until the process ends is reported as lost. Leaks of our own are reported
// still: the name is that of the library whose function allocated.
// NOLINTBEGIN(bugprone-reserved-identifier): the leak checker looks for this very name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
// NOLINTEND(bugprone-reserved-identifier)
