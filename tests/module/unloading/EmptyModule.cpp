// A module that does next to nothing, made with the same tools as the real one: what it leaves
// behind when it is unloaded is theirs.
#include <stdexcept>

extern "C" __declspec(dllexport) int Use() {
    try {
        throw std::runtime_error("used");
    } catch (const std::exception& error) {
        return error.what()[0];
    }
}
