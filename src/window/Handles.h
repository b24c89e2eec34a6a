#pragma once

#include <windows.h>

#include <commctrl.h>

#include <utility>

namespace tolvane {

// Move-only owner of a system handle; Traits names its type, the value that means none, and
// how it is given back.
template <class Traits>
class TOwned {
public:
    using TValue = typename Traits::TValue;

    TOwned() noexcept = default;
    explicit TOwned(TValue value) noexcept : value_(value) {}
    TOwned(TOwned&& other) noexcept : value_(other.Release()) {}
    TOwned& operator=(TOwned&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    TOwned(const TOwned&) = delete;
    TOwned& operator=(const TOwned&) = delete;
    ~TOwned() { Reset(); }

    TValue Get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != Traits::kNone; }
    TValue Release() noexcept { return std::exchange(value_, Traits::kNone); }
    void Reset(TValue value = Traits::kNone) noexcept {
        const TValue old = std::exchange(value_, value);
        if (old != Traits::kNone) Traits::Free(old);
    }

private:
    TValue value_ = Traits::kNone;
};

template <class Handle>
struct TGdiTraits {
    using TValue = Handle;
    static constexpr Handle kNone = nullptr;
    static void Free(Handle handle) noexcept { DeleteObject(handle); }
};
struct TWindowTraits {
    using TValue = HWND;
    static constexpr HWND kNone = nullptr;
    static void Free(HWND handle) noexcept { DestroyWindow(handle); }
};
struct TIconTraits {
    using TValue = HICON;
    static constexpr HICON kNone = nullptr;
    static void Free(HICON handle) noexcept { DestroyIcon(handle); }
};
struct TMenuTraits {
    using TValue = HMENU;
    static constexpr HMENU kNone = nullptr;
    static void Free(HMENU handle) noexcept { DestroyMenu(handle); }
};
struct TImageListTraits {
    using TValue = HIMAGELIST;
    static constexpr HIMAGELIST kNone = nullptr;
    static void Free(HIMAGELIST handle) noexcept { ImageList_Destroy(handle); }
};
struct TMemoryDcTraits {
    using TValue = HDC;
    static constexpr HDC kNone = nullptr;
    static void Free(HDC handle) noexcept { DeleteDC(handle); }
};
struct TClipboardTraits {
    using TValue = bool;  // open
    static constexpr bool kNone = false;
    static void Free(bool) noexcept { CloseClipboard(); }
};
struct TGlobalMemoryTraits {
    using TValue = HGLOBAL;
    static constexpr HGLOBAL kNone = nullptr;
    static void Free(HGLOBAL handle) noexcept { GlobalFree(handle); }
};
struct THookTraits {
    using TValue = HHOOK;
    static constexpr HHOOK kNone = nullptr;
    static void Free(HHOOK handle) noexcept { UnhookWindowsHookEx(handle); }
};

using TOwnedWindow = TOwned<TWindowTraits>;
using TOwnedFont = TOwned<TGdiTraits<HFONT>>;
using TOwnedBrush = TOwned<TGdiTraits<HBRUSH>>;
using TOwnedPen = TOwned<TGdiTraits<HPEN>>;
using TOwnedBitmap = TOwned<TGdiTraits<HBITMAP>>;
using TOwnedIcon = TOwned<TIconTraits>;
using TOwnedMenu = TOwned<TMenuTraits>;
using TOwnedImageList = TOwned<TImageListTraits>;
using TOwnedHook = TOwned<THookTraits>;
// Made by CreateCompatibleDC or CreateDC.
using TOwnedDc = TOwned<TMemoryDcTraits>;
using TOpenClipboard = TOwned<TClipboardTraits>;
using TOwnedGlobalMemory = TOwned<TGlobalMemoryTraits>;

// Locks a global block for the length of a block of code; null when it cannot be locked.
template <class Content>
class TLockedGlobal {
public:
    explicit TLockedGlobal(HGLOBAL memory) noexcept
        : memory_(memory),
          content_(memory != nullptr ? static_cast<Content*>(GlobalLock(memory)) : nullptr) {}
    TLockedGlobal(const TLockedGlobal&) = delete;
    TLockedGlobal& operator=(const TLockedGlobal&) = delete;
    ~TLockedGlobal() {
        if (content_ != nullptr) GlobalUnlock(memory_);
    }
    Content* Get() const noexcept { return content_; }

private:
    HGLOBAL memory_;
    Content* content_;
};

// Begins and ends the painting of a window, also when it fails.
class TPainting {
public:
    explicit TPainting(HWND window) noexcept : window_(window), dc_(BeginPaint(window, &paint_)) {}
    TPainting(const TPainting&) = delete;
    TPainting& operator=(const TPainting&) = delete;
    ~TPainting() { EndPaint(window_, &paint_); }
    HDC Dc() const noexcept { return dc_; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

// The device context of a window (or of the screen), given back at the end of the block.
class TWindowDc {
public:
    explicit TWindowDc(HWND window) noexcept : window_(window), dc_(GetDC(window)) {}
    TWindowDc(const TWindowDc&) = delete;
    TWindowDc& operator=(const TWindowDc&) = delete;
    ~TWindowDc() { ReleaseDC(window_, dc_); }
    HDC Get() const noexcept { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

// Selects an object into a device context for the length of a block.
class TSelected {
public:
    TSelected(HDC dc, HGDIOBJ object) noexcept : dc_(dc), old_(SelectObject(dc, object)) {}
    TSelected(const TSelected&) = delete;
    TSelected& operator=(const TSelected&) = delete;
    ~TSelected() { SelectObject(dc_, old_); }

private:
    HDC dc_;
    HGDIOBJ old_;
};

}  // namespace tolvane
