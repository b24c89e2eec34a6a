/* A module without a C++ library: it leaves nothing behind. */
__declspec(dllexport) int Use(void) {
    return 1;
}
