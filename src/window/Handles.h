#pragma once

#include <windows.h>

#include <commctrl.h>

#include "system/Owned.h"

namespace tolvane {

// Owners of the handles that Windows gives out. A null handle is no handle.

template <class Handle, auto GiveBack>
struct THandleTraits {
    using TValue = Handle;
    static constexpr Handle kNone = nullptr;
    static void Free(Handle handle) noexcept { GiveBack(handle); }
};
struct TClipboardTraits {
    using TValue = bool;  // whether this thread has the clipboard open
    static constexpr bool kNone = false;
    static void Free(bool) noexcept { CloseClipboard(); }
};

using TOwnedWindow = TOwned<THandleTraits<HWND, &DestroyWindow>>;
using TOwnedFont = TOwned<THandleTraits<HFONT, &DeleteObject>>;
using TOwnedBrush = TOwned<THandleTraits<HBRUSH, &DeleteObject>>;
using TOwnedPen = TOwned<THandleTraits<HPEN, &DeleteObject>>;
using TOwnedBitmap = TOwned<THandleTraits<HBITMAP, &DeleteObject>>;
using TOwnedIcon = TOwned<THandleTraits<HICON, &DestroyIcon>>;
using TOwnedMenu = TOwned<THandleTraits<HMENU, &DestroyMenu>>;
using TOwnedImageList = TOwned<THandleTraits<HIMAGELIST, &ImageList_Destroy>>;
using TOwnedHook = TOwned<THandleTraits<HHOOK, &UnhookWindowsHookEx>>;
using TOwnedAccelerators = TOwned<THandleTraits<HACCEL, &DestroyAcceleratorTable>>;
// A device context made by CreateCompatibleDC or CreateDC.
using TOwnedDc = TOwned<THandleTraits<HDC, &DeleteDC>>;
// A library or module loaded by LoadLibrary or held by GetModuleHandleEx.
using TOwnedLibrary = TOwned<THandleTraits<HMODULE, &FreeLibrary>>;
// An event, a thread or a process. Not a file: CreateFile reports a failure by another value.
using TOwnedKernelObject = TOwned<THandleTraits<HANDLE, &CloseHandle>>;
using TOwnedGlobalMemory = TOwned<THandleTraits<HGLOBAL, &GlobalFree>>;
using TOpenClipboard = TOwned<TClipboardTraits>;

// Locks a global memory block until the end of a scope. Get returns null when it could not be
// locked.
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

// Paints a window: begins in the constructor and ends in the destructor.
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

// The device context of a window, or of the screen for null. Releases it in the destructor.
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

// Selects an object into a device context until the end of a scope.
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
