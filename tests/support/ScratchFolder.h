#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace tolvane {

// An empty folder of the test's own, removed with all that is in it.
class TScratchFolder {
public:
    TScratchFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("tolvane-test-" + std::to_string(random()) + "-" + std::to_string(random()));
        std::filesystem::create_directory(path_);
    }
    TScratchFolder(const TScratchFolder&) = delete;
    TScratchFolder& operator=(const TScratchFolder&) = delete;
    ~TScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return path_ / name;
    }
    std::size_t FileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_),
                                                      std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path path_;
};

inline void PutFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string GetFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace tolvane
