#pragma once

#include <string>

#include "config/TypesUnit.h"

namespace tolvane {

// A checked EVL on TCP at 10.0.0.<number>:100.
inline TScaleRec NetworkScale(int number, const std::string& name) {
    TScaleRec rec;
    rec.ScaleNumb = number;
    rec.ScaleName = name;
    rec.TCPAddress = "10.0.0." + std::to_string(number);
    rec.TCPPort = 100;
    rec.Checked = true;
    rec.ScaleType = kScaleTypeEvl;
    rec.CommType = kCommTcp;
    rec.Encoding = 2;
    return rec;
}

// The section of that scale in a slot, as the module writes it.
inline std::string NetworkScaleSection(int slot, int number, const std::string& name,
                                       bool checked = true) {
    return "[SCALE" + std::to_string(slot) + "]\r\nScaleNumb=" + std::to_string(number) +
           "\r\nScaleName=" + name + "\r\nTCPAddress=10.0.0." + std::to_string(number) +
           "\r\nTCPPort=100\r\nChecked=" + (checked ? "1" : "0") +
           "\r\nBaudRate=0\r\nScaleType=16\r\nEncoding=2\r\nScaleAddr=0\r\nCommType=1\r\n";
}

}  // namespace tolvane
