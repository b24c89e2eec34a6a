#include "system/SerialPortList.h"

#include <algorithm>

#include "text/Cp1251.h"

namespace tolvane {
namespace {

constexpr int kUsualPorts = 6;

std::vector<std::string> UsualPorts() {
    std::vector<std::string> names;
    for (int number = 1; number <= kUsualPorts; ++number)
        names.push_back("COM" + std::to_string(number));
    return names;
}

}  // namespace

void StoreSerialPorts(const TSerialPortScan& scan, bool sort, std::vector<std::string>& items) {
    if (!scan.available) return;
    std::vector<std::string> names = scan.complete ? scan.names : UsualPorts();
    if (sort)
        std::stable_sort(names.begin(), names.end(), [](const auto& a, const auto& b) {
            return CompareIgnoringCase(a, b) < 0;
        });
    items = std::move(names);
}

}  // namespace tolvane
