#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <utility>
#include <vector>

namespace tolvane::test {

// Fills a small disk by this file while it lives.
class TFullDisk {
public:
    static constexpr DWORD kError = 112;

    explicit TFullDisk(std::filesystem::path ballast) : ballast_(std::move(ballast)) {
        handle_ =
            CreateFileW(ballast_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
        for (const DWORD size : {65536U, 4096U, 1U})
            FillBy(size);
    }
    TFullDisk(const TFullDisk&) = delete;
    TFullDisk& operator=(const TFullDisk&) = delete;
    ~TFullDisk() {
        CloseHandle(handle_);
        DeleteFileW(ballast_.c_str());
    }

private:
    void FillBy(DWORD size) const {
        const std::vector<char> block(size, 'x');
        DWORD written = 0;
        int blocks = 0;
        constexpr int kMost = 4096;  // more than the disk of a test can hold
        while (blocks < kMost && WriteFile(handle_, block.data(), size, &written, nullptr) != 0)
            ++blocks;
        EXPECT_LT(blocks, kMost) << "the disk never gets full";
        EXPECT_EQ(GetLastError(), kError);
    }

    std::filesystem::path ballast_;
    HANDLE handle_;
};

}  // namespace tolvane::test
