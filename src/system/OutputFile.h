#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace tolvane {

// A file that grows while a program works. What has been written stays when the program is killed.
// All errors are std::system_error with the system's own number (errno, GetLastError).
class TOutputFile {
public:
    // Makes the file or empties it. Other programs may read it meanwhile.
    explicit TOutputFile(const std::filesystem::path& file);
    TOutputFile(const TOutputFile&) = delete;
    TOutputFile& operator=(const TOutputFile&) = delete;
    ~TOutputFile();

    // Hands all bytes to the system at once, though a killed program may have got through with a
    // part of them. When the system takes only a part of them, as on a full disk, the file is cut
    // back to what it held before. Afterwards the object is of no more use.
    void Write(std::string_view bytes);

private:
    void CutBack() noexcept;

    std::intptr_t handle_;
    std::int64_t size_ = 0;
};

}  // namespace tolvane
