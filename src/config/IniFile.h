#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "config/IniDocument.h"

namespace tolvane {

// A file could not be read or written; the message (code page 1251) names the file and the system's
// reason with its number.
class TFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A missing file or folder is an empty document. Throws TFileError when a file is there but cannot
// be read.
TIniDocument ReadIniFile(const std::filesystem::path& file);
// Replaces the file atomically: whoever reads it, at any moment, finds the old or the new content
// whole, also after a crash. Nothing is written when the file already holds these bytes, or when it
// is missing and the document empty. Temporary files that killed saves of this file left beside it
// are removed. Throws TFileError; the old file is then untouched.
void WriteIniFile(const std::filesystem::path& file, const TIniDocument& document);
// Reads the file, calls `change`, and writes the file; other callers wait meanwhile. Throws
// TFileError and what `change` throws.
void UpdateIniFile(const std::filesystem::path& file,
                   const std::function<void(TIniDocument&)>& change);

}  // namespace tolvane
