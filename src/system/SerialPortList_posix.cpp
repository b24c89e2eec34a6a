#include "system/SerialPortList.h"

#include <filesystem>

namespace tolvane {

namespace fs = std::filesystem;

// The terminals that belong to a device, as "/dev/ttyUSB0".
TSerialPortScan ScanSerialPorts() {
    TSerialPortScan scan;
    std::error_code error;
    fs::directory_iterator terminal("/sys/class/tty", error);
    if (error) return scan;
    scan.available = true;
    for (; terminal != fs::directory_iterator(); terminal.increment(error)) {
        std::error_code ignored;
        if (fs::exists(terminal->path() / "device", ignored))
            scan.names.push_back("/dev/" + terminal->path().filename().string());
    }
    scan.complete = !error;
    return scan;
}

bool HasSerialPort(const std::string& name) {
    std::error_code error;
    return fs::is_character_file(name, error);
}

std::string SerialPortOfNumber(int number) {
    return "/dev/ttyS" + std::to_string(number - 1);
}

}  // namespace tolvane
