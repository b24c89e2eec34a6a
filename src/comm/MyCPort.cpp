#include "comm/MyCPort.h"

#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/serial_port.hpp>
#include <stdexcept>
#include <system_error>

#include "system/SerialDriver.h"

namespace tolvane {
namespace {

using asio::serial_port_base;

constexpr unsigned kFewestDataBits = 5;

serial_port_base::stop_bits StopBits(TStopBits bits) {
    switch (bits) {
        case sbOneStopBit:
            return serial_port_base::stop_bits(serial_port_base::stop_bits::one);
        case sbOne5StopBits:
            return serial_port_base::stop_bits(serial_port_base::stop_bits::onepointfive);
        case sbTwoStopBits:
            return serial_port_base::stop_bits(serial_port_base::stop_bits::two);
    }
    throw std::runtime_error("These stop bits are not supported.");
}

serial_port_base::parity Parity(TParityBits parity) {
    switch (parity) {
        case prNone:
            return serial_port_base::parity(serial_port_base::parity::none);
        case prOdd:
            return serial_port_base::parity(serial_port_base::parity::odd);
        case prEven:
            return serial_port_base::parity(serial_port_base::parity::even);
        case prMark:
        case prSpace:
            break;
    }
    throw std::runtime_error("This parity is not supported.");
}

serial_port_base::flow_control FlowControl(TFlowControl flow) {
    switch (flow) {
        case fcHardware:
            return serial_port_base::flow_control(serial_port_base::flow_control::hardware);
        case fcSoftware:
            return serial_port_base::flow_control(serial_port_base::flow_control::software);
        case fcNone:
            return serial_port_base::flow_control(serial_port_base::flow_control::none);
        case fcCustom:
            break;
    }
    throw std::runtime_error("This flow control is not supported.");
}

serial_port_base::baud_rate BaudRate(TBaudRate rate) {
    if (rate == brCustom) throw std::runtime_error("This speed is not supported.");
    return serial_port_base::baud_rate(static_cast<unsigned>(kBitsPerSecond[rate]));
}

}  // namespace

struct TComPort::TPort {
    asio::io_context io{1};
    asio::serial_port port{io};
    // Bytes of which the driver has told and which are still in the port.
    std::size_t announced = 0;

    std::intptr_t Handle() {
        return (std::intptr_t)port.native_handle();
    }  // NOLINT: int or pointer

    void Apply(const TLineSettings& settings) {
        port.set_option(BaudRate(settings.baudRate));
        port.set_option(
            serial_port_base::character_size(kFewestDataBits + unsigned{settings.dataBits}));
        port.set_option(StopBits(settings.stopBits));
        port.set_option(Parity(settings.parity));
        port.set_option(FlowControl(settings.flowControl));
    }
};

TComPort::TComPort() : port_(std::make_unique<TPort>()) {}

TComPort::~TComPort() {
    Close();
}

void TComPort::Open(const std::string& name, const TLineSettings& settings) {
    // The library adds the prefix that names above COM9 need.
    port_->port.open(name);
    try {
        SetUpSerialDriver(port_->Handle());
        port_->Apply(settings);
        PurgeBuffers();
    } catch (...) {
        Close();
        throw;
    }
}

void TComPort::Close() {
    std::error_code ignored;
    port_->port.close(ignored);
}

bool TComPort::Connected() const {
    return port_->port.is_open();
}

void TComPort::PurgeBuffers() {
    PurgeSerialBuffers(port_->Handle());
    port_->announced = 0;
}

std::size_t TComPort::BytesWaiting() {
    return SerialBytesWaiting(port_->Handle());
}

bool TComPort::ReadByte(std::uint8_t& byte) {
    if (port_->announced == 0) port_->announced = BytesWaiting();
    if (port_->announced == 0) return false;
    std::error_code error;
    const std::size_t count = port_->port.read_some(asio::buffer(&byte, 1), error);
    port_->announced = count == 1 ? port_->announced - 1 : 0;
    // A port that has disappeared since then reports the end of a file; the next call finds the
    // reason.
    if (error && error != asio::error::eof) throw std::system_error(error);
    return count == 1;
}

std::size_t TComPort::Write(const std::uint8_t* bytes, std::size_t count) {
    return port_->port.write_some(asio::buffer(bytes, count));
}

}  // namespace tolvane
