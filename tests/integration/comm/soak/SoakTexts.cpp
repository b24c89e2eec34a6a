#include "simulator/Hex.h"
#include "tests/integration/comm/soak/SoakPlan.h"

namespace tolvane::test {
namespace {

std::string Hex(int byte) {
    const auto low = static_cast<std::uint8_t>(byte & 0xFF);
    return simulator::ToHex({&low, 1});
}

std::string Unexpected(const std::string& what) {
    return "Unexpected answer from scale. " + what;
}

std::string Mismatch(const std::string& what, int expected, int received) {
    return Unexpected(what + "Exp:" + Hex(expected) + " Rec:" + Hex(received) + ")");
}

// The checksum of a right reply: the sum of address 00, command and data. In the version reply 48,
// the text "1.04" (31 2E 30 34), the highest number 4000 (A0 0F) and label mode 02 make 444, whose
// low byte is BC.
int Checksum(TSoakCommand command) {
    return command == TSoakCommand::Version ? 0xBC : CodeOf(command);
}

std::string Prefix(const TSoakExchange& exchange) {
    switch (exchange.command) {
        case TSoakCommand::Version:
            return "Fail get version: ";
        case TSoakCommand::PrgMode:
            return "Fail set Weight mode: ";
        case TSoakCommand::Param:
            return "Fail set parameter: Plu:" + std::to_string(exchange.plu) +
                   " ParN:5 ParT:\"Soak\"\r\n";
        default:
            return "Fail set PLU price: ";
    }
}

std::string ReadFailure(TWire wire, const std::string& address) {
    if (wire == TWire::Tcp) return "[ReadResponce][TCP] Fail read data (" + address + ") - ";
    if (wire == TWire::Udp) return "[ReadResponce][UDP] Fail read data (" + address + ") - ";
    return "[ReadResponce][RS232] Fail receive data (" + address + "): ";
}

std::string LinkText(TResult result, TWire wire, const std::string& address) {
    const std::string read = ReadFailure(wire, address);
    if (result == TResult::WrongAnswer) return read + "Wrong answer. No STX byte.";
    if (result == TResult::Timeout)
        return read + (wire == TWire::Serial ? "Read timeour occured" : "Read timeout occured");
    if (result == TResult::Lost)
        return read +
               (wire == TWire::Serial ? "Input/output error (5)" : "Socket is not connected.");
    return "[SendData][TCP] Fail send data (" + address + ") - Socket is not connected.";
}

std::string ReplyText(const TSoakExchange& exchange) {
    const int code = CodeOf(exchange.command);
    switch (exchange.expected.result) {
        case TResult::Refused:
            return "Scale return Error code: 7";
        case TResult::NoData:
            return Unexpected("No error code");
        case TResult::TooShort:
            return Unexpected("Answer is too short.");
        case TResult::Address:
            return Mismatch("Scale address does not match.", 0, 1);
        case TResult::OtherCommand:
            return Mismatch("Command does not match.", code, code + 1);
        case TResult::Foreign:
            return Mismatch("Command does not match.", code, 0x3C);
        case TResult::Stale:
            return Mismatch("Command does not match.", code, CodeOf(exchange.heldCommand));
        case TResult::DataBit:
            return Mismatch("Invalid Checksum. ", code + 1, code);
        default:
            return Mismatch("Invalid Checksum. ", Checksum(exchange.command),
                            Checksum(exchange.command) + 1);
    }
}

}  // namespace

std::string ExpectedText(const TSoakExchange& exchange, TWire wire, const std::string& address) {
    switch (exchange.expected.result) {
        case TResult::NotDrawn:
        case TResult::Answered:
            return {};
        case TResult::Timeout:
        case TResult::WrongAnswer:
        case TResult::Lost:
        case TResult::LostSend:
            return Prefix(exchange) + LinkText(exchange.expected.result, wire, address);
        case TResult::Stale:
            if (exchange.command == exchange.heldCommand) return {};
            [[fallthrough]];
        default:
            return Prefix(exchange) + ReplyText(exchange);
    }
}

}  // namespace tolvane::test
