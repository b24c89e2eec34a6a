#pragma once

namespace tolvane::test {

// Commands of the list window's menu.
inline constexpr int kWriteAll = 1002;
inline constexpr int kDeleteMarked = 1003;
inline constexpr int kDeleteAll = 1004;
inline constexpr int kSettingsCommand = 1005;

}  // namespace tolvane::test
