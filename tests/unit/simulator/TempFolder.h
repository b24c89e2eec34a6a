#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace tolvane::simulator {

// A folder of one test's own, which goes with it.
class TTempFolder {
public:
    TTempFolder()
        : path_(std::filesystem::path(testing::TempDir()) /
                ("tolvane-scale-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directory(path_);
    }
    ~TTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TTempFolder(const TTempFolder&) = delete;
    TTempFolder& operator=(const TTempFolder&) = delete;

    std::string Path(const char* name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

}  // namespace tolvane::simulator
