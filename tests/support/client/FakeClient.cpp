#include "tests/support/client/FakeClient.h"

#include "system/Library.h"

namespace tolvane::test {

const char* FakeClientName() {
    return TOLVANE_FAKE_CLIENT;
}

TFakeClient& NewFakeClient() {
    static TFakeClient* const client = [] {
        TLibrary library(FakeClientName());
        auto* const state = reinterpret_cast<TFakeClient* (*)()>(
            FindFunction(library.Handle(), "tolvane_fake_client"));
        library.Keep();
        return state();
    }();
    *client = {};
    return *client;
}

}  // namespace tolvane::test
