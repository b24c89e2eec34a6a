#include "tests/module_host/FilePrinter.h"

#include <winspool.h>

#include <stdexcept>
#include <vector>

#include "tests/support/ScratchFolder.h"

namespace tolvane::test {
namespace {

constexpr const wchar_t* kDriver = L"TradeHostTestDriver";

// The least that describes a printer: one paper and its printable area.
constexpr const char* kDescription =
    "*PPD-Adobe: \"4.3\"\n"
    "*FormatVersion: \"4.3\"\n"
    "*LanguageEncoding: ISOLatin1\n"
    "*ModelName: \"Test\"\n"
    "*NickName: \"Test\"\n"
    "*LanguageLevel: \"3\"\n"
    "*ColorDevice: True\n"
    "*DefaultResolution: 600dpi\n"
    "*OpenUI *PageSize: PickOne\n"
    "*DefaultPageSize: A4\n"
    "*PageSize A4/A4: \"<</PageSize[595 842]>>setpagedevice\"\n"
    "*CloseUI: *PageSize\n"
    "*DefaultImageableArea: A4\n"
    "*ImageableArea A4/A4: \"18 18 577 824\"\n"
    "*DefaultPaperDimension: A4\n"
    "*PaperDimension A4/A4: \"595 842\"\n"
    "*LandscapeOrientation: Plus90\n"
    "*DefaultFont: Courier\n"
    "*Font Courier: Standard \"(002.004S)\" Standard ROM\n";

void AddDriver(const std::filesystem::path& description) {
    std::wstring name = kDriver;
    std::wstring system = L"Windows NT x86";
    std::wstring library = L"wineps.drv";
    std::wstring data = description.wstring();
    std::wstring type = L"RAW";
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = name.data();
    driver.pEnvironment = system.data();
    driver.pDriverPath = library.data();
    driver.pConfigFile = library.data();
    driver.pDataFile = data.data();
    driver.pDefaultDataType = type.data();
    if (AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                            APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY) == 0)
        throw std::runtime_error("AddPrinterDriverEx: " + std::to_string(GetLastError()));
}

HANDLE AddPrinterFor(const std::filesystem::path& output, std::wstring name) {
    std::wstring driver = kDriver;
    std::wstring processor = L"WinPrint";
    std::wstring type = L"RAW";
    std::wstring port = output.wstring();
    PRINTER_INFO_2W printer{};
    printer.pPrinterName = name.data();
    printer.pPortName = port.data();
    printer.pDriverName = driver.data();
    printer.pPrintProcessor = processor.data();
    printer.pDatatype = type.data();
    printer.Attributes = PRINTER_ATTRIBUTE_LOCAL;
    const HANDLE handle = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    if (handle == nullptr)
        throw std::runtime_error("AddPrinter: " + std::to_string(GetLastError()));
    return handle;
}

}  // namespace

TFilePrinter::TFilePrinter(const std::filesystem::path& folder)
    : name_(L"TradeHostTest " + folder.filename().wstring()), output_(folder / "output.ps") {
    std::filesystem::create_directories(folder);
    std::filesystem::remove(output_);
    const std::filesystem::path description = folder / "printer.ppd";
    PutFile(description, kDescription);
    AddDriver(description);
    printer_ = AddPrinterFor(output_, name_);
}

TFilePrinter::~TFilePrinter() {
    DeletePrinter(printer_);
    ClosePrinter(printer_);
}

HDC TFilePrinter::MakeDc() const {
    std::wstring name = name_;
    const LONG size = DocumentPropertiesW(nullptr, printer_, name.data(), nullptr, nullptr, 0);
    if (size <= 0) throw std::runtime_error("DocumentProperties");
    std::vector<BYTE> bytes(static_cast<std::size_t>(size));
    auto* mode = reinterpret_cast<DEVMODEW*>(bytes.data());
    DocumentPropertiesW(nullptr, printer_, name.data(), mode, nullptr, DM_OUT_BUFFER);
    mode->dmFields |= DM_ORIENTATION;
    mode->dmOrientation = DMORIENT_LANDSCAPE;
    const HDC dc = CreateDCW(L"WINSPOOL", name_.c_str(), nullptr, mode);
    if (dc == nullptr) throw std::runtime_error("CreateDC");
    return dc;
}

std::string TFilePrinter::Output() const {
    return GetFile(output_);
}

}  // namespace tolvane::test
