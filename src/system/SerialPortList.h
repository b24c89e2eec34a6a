#pragma once

#include <string>
#include <vector>

namespace tolvane {

// What the system's list of serial ports gave.
struct TSerialPortScan {
    bool available = false;          // the system has such a list
    bool complete = false;           // it was read to its end
    std::vector<std::string> names;  // what was read, in the system's order
};

// Asks the system anew each time. The result says what could not be read; throws only
// std::bad_alloc. Any thread.
TSerialPortScan ScanSerialPorts();

// What opens the port that the configuration calls "COM" and this number.
std::string SerialPortOfNumber(int number);

// Whether the system has a port of that name ("/dev/ttyS0", "COM1"); opens nothing. Any thread.
bool HasSerialPort(const std::string& name);

// Replaces `items` by the ports of a scan, sorted as text when `sort` is set. The items stay when
// the system has no list; they become COM1 to COM6 when the list could not be read to its end.
void StoreSerialPorts(const TSerialPortScan& scan, bool sort, std::vector<std::string>& items);

}  // namespace tolvane
