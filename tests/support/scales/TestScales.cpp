#include "tests/support/scales/TestScales.h"

namespace tolvane {

TScaleRec NetworkScale(int number, std::string_view name) {
    return NetworkScale(number, name, "10.0.0." + std::to_string(number), 100);
}

TScaleRec NetworkScale(int number, std::string_view name, std::string_view address,
                       std::uint16_t port) {
    TScaleRec rec;
    rec.ScaleNumb = number;
    rec.ScaleName = name;
    rec.TCPAddress = address;
    rec.TCPPort = port;
    rec.Checked = true;
    rec.ScaleType = kScaleTypeEvl;
    rec.CommType = kCommTcp;
    rec.Encoding = 2;
    return rec;
}

TScaleRec SerialScale(int number, std::string_view name, std::string_view port) {
    // A slot is empty without a TCP port, whatever its link.
    TScaleRec rec = NetworkScale(number, name, port, 1001);
    rec.CommType = kCommSerial;
    return rec;
}

std::string NetworkScaleSection(int slot, int number, const std::string& name, bool checked) {
    return "[SCALE" + std::to_string(slot) + "]\r\nScaleNumb=" + std::to_string(number) +
           "\r\nScaleName=" + name + "\r\nTCPAddress=10.0.0." + std::to_string(number) +
           "\r\nTCPPort=100\r\nChecked=" + (checked ? "1" : "0") +
           "\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=1\r\n";
}

}  // namespace tolvane
