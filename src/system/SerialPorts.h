#pragma once

#include <string>
#include <vector>

namespace tolvane {

// What the system's list of serial ports gave.
struct TSerialPortScan {
    bool available = false;          // there is such a list
    bool complete = false;           // it was read to its end
    std::vector<std::string> names;  // what was read, in the system's order
};

// Asks the system anew each time. What cannot be read is told by the result; throws nothing but
// std::bad_alloc. Any thread.
TSerialPortScan ScanSerialPorts();

// Replaces `items` by the ports of a scan, sorted as text when asked to. Without a list the items
// stay; when reading it failed on the way they become COM1 to COM6.
void StoreSerialPorts(const TSerialPortScan& scan, bool sort, std::vector<std::string>& items);

}  // namespace tolvane
