// Linked into the command where it is built with the address sanitizer. The embedded engine's
// threads may still be ending when the process looks for leaks at its end, which that does not
// survive. ASAN_OPTIONS=detect_leaks=1 looks for them nevertheless.

extern "C" const char* __asan_default_options();  // NOLINT: the sanitizer's name

extern "C" const char* __asan_default_options() {  // NOLINT
    return "detect_leaks=0";
}
