#include "window/OwnerWatch.h"

#include <gtest/gtest.h>

#include <windows.h>

#include "articles/forms/uWaitForm.h"
#include "tests/support/window/HostFrame.h"

namespace tolvane::test {

TEST(OwnerWatch, TheWindowGoesWithItsOwner) {
    const THostFrame host;
    TWaitForm form(host.Frame());
    form.Show(0);
    const TOwnerWatch watch(host.Client(), form);
    ASSERT_NE(form.Handle(), nullptr);
    DestroyWindow(host.Client());
    EXPECT_EQ(form.Handle(), nullptr);
}

TEST(OwnerWatch, SeveralWindowsOfOneOwnerAreWatchedEachByItself) {
    const THostFrame host;
    TWaitForm first(host.Frame());
    TWaitForm second(host.Frame());
    TWaitForm third(host.Frame());
    first.Show(0);
    second.Show(0);
    third.Show(0);
    const TOwnerWatch outer(host.Client(), first);
    const TOwnerWatch other(host.Client(), second);
    { const TOwnerWatch inner(host.Client(), third); }
    DestroyWindow(host.Client());
    EXPECT_EQ(first.Handle(), nullptr);
    EXPECT_EQ(second.Handle(), nullptr);
    // Nobody watches the owner for it any more.
    EXPECT_NE(third.Handle(), nullptr);
}

}  // namespace tolvane::test
