#pragma once

#include <filesystem>
#include <functional>

#include "config/IniDocument.h"
#include "config/ScaleTable.h"

namespace tolvane {

// The module's configuration file as one list window uses it: the scales, and what the window keeps
// beside them, here called its layout. The store writes only what it could read: a file that could
// not be read may hold scales, and no scales must not be written over them. One thread.
class TConfigurationStore {
public:
    // Takes the layout over from the file's document.
    using TReadLayout = std::function<void(const TIniDocument&)>;
    // Puts the layout into the file's document.
    using TWriteLayout = std::function<void(TIniDocument&)>;

    // The module's file, as ModuleConfigurationFile gives it, and the host's own settings. Reads
    // nothing.
    TConfigurationStore(std::filesystem::path file, std::filesystem::path hostSettings);

    const std::filesystem::path& File() const { return file_; }

    // Reads the scales and passes the document to `read`. Throws only what `read` throws: a file
    // that cannot be read counts as empty until EnsureScalesLoaded or EnsureLayoutLoaded.
    void Load(const TReadLayout& read);
    // Each reads the file now if Load could not, and throws TFileError if that fails again.
    // EnsureLayoutLoaded then passes the document to `read`.
    void EnsureScalesLoaded();
    void EnsureLayoutLoaded(const TReadLayout& read);
    // The host's settings; an empty document when they cannot be read.
    TIniDocument HostSettings() const;

    // The scales as this window has them.
    TScaleTable& Scales() { return scales_; }
    // Brings what this window has changed in the scales into the file; a file that does not exist
    // gets all of them. Throws TFileError when the file cannot be read or written. Also throws it
    // when the file has no room for an added scale: the rest is saved then, and the next save tries
    // that scale again.
    void SaveScales();
    // Throws TFileError.
    void SaveLayout(const TWriteLayout& write) const;
    // Saves the scales and the layout, each only if it could be read. Only the first call does
    // anything, whether it succeeds or not. Throws as SaveScales does.
    void SaveAtEnd(const TWriteLayout& write);
    // Whether scales that this window has added, changed or removed are not in the file.
    bool HasUnsavedScales() const;

private:
    std::filesystem::path FileForSaving() const;
    // Saves both in one step. An empty function leaves the file's layout as it is.
    void Save(bool scales, const TWriteLayout& layout);

    std::filesystem::path file_;
    std::filesystem::path hostSettings_;
    TScaleTable scales_;
    TScaleTable savedScales_;  // as this window loaded or last saved them
    bool scalesLoaded_ = false;
    bool layoutLoaded_ = false;
    bool ended_ = false;
};

}  // namespace tolvane
