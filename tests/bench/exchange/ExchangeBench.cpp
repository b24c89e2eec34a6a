// Prints what one exchange with a scale takes by our channel and driver, and by a bare socket or
// port that sends the same request to the same peer and waits for the same reply.
//
//   bench_exchange [--quick]
//       with a peer of its own; not on Windows
//   bench_exchange --serve FILE
//       is the peer until it is ended; writes its ports into the file
//   bench_exchange [--quick] --peer TCP UDP COM
//       with that peer: two port numbers and a port's name

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommTCP.h"
#include "comm/TDevCommUDP.h"
#include "scale/DevElicomScaleUnit.h"
#include "scale/ScaleFrame.h"
#include "tests/bench/exchange/BareLinks.h"
#include "tests/bench/exchange/Peer.h"
#include "tests/bench/measure/Quick.h"
#include "tests/bench/measure/Sides.h"

namespace tolvane::bench {
namespace {

constexpr std::uint8_t kSetParam = 0x4C;
constexpr std::int32_t kTextLength = 31;
constexpr double kAtMost = 1.2;

using TScale = std::unique_ptr<TElicomScale>;
using TOpenOurs = std::function<TScale()>;
using TOpenBare = std::function<std::unique_ptr<TBareLink>()>;

struct TCounts {
    int exchanges;
    int rounds;
};

// Article 300, parameter 0, the length and the name.
TCmdBuffer NameData() {
    TCmdBuffer data;
    for (const int byte : {0, 0x2C, 0x01, 0, kTextLength})
        data.push_back(static_cast<std::uint8_t>(byte));
    TDevCommBase::TextToBytes("\xD1\xE8\xF0\xE5\xED\xE5", kTextLength, kCodeTableRaw, data);
    return data;
}

void OurExchange(TElicomScale& scale, const TCmdBuffer& request) {
    TCmdBuffer data = request;
    if (!scale.SendCommand(kSetParam, data)) throw std::runtime_error(scale.LastError);
    if (data != TCmdBuffer{0}) throw std::runtime_error("another reply");
}

void BareExchange(TBareLink& link, const TCmdBuffer& frame) {
    TCmdBuffer reply(sizeof kPeerReply);
    link.Exchange(frame, reply);
    if (!std::ranges::equal(reply, kPeerReply)) throw std::runtime_error("another reply");
}

// Each side opens its link anew in each round, since a port can be open once.
void Measure(const std::string& name, const TOpenOurs& openOurs, const TOpenBare& openBare,
             TCounts counts, std::optional<double> atMost) {
    const TCmdBuffer data = NameData();
    const TCmdBuffer frame = EncodeRequest(0, kSetParam, data);
    TScale ours;
    std::unique_ptr<TBareLink> bare;
    const auto repeat = [&counts](const auto& exchange) {
        for (int i = 0; i < counts.exchanges; ++i)
            exchange();
    };
    std::printf("%s, %d exchanges\n", name.c_str(), counts.exchanges);
    Compare({"our channel", [&] { repeat([&] { OurExchange(*ours, data); }); },
             [&] {
                 bare.reset();
                 ours = openOurs();
                 OurExchange(*ours, data);
             }},
            {"bare", [&] { repeat([&] { BareExchange(*bare, frame); }); },
             [&] {
                 ours.reset();
                 bare = openBare();
                 BareExchange(*bare, frame);
             }},
            atMost, counts.rounds);
}

TScale Opened(std::unique_ptr<TDevComm> channel, bool serial) {
    auto scale = std::make_unique<TElicomScale>(std::move(channel), serial, SystemClock());
    if (!scale->OpenChannel()) throw std::runtime_error(scale->LastError);
    return scale;
}

template <class TChannel, class... TArguments>
TScale OpenOurSocket(std::uint16_t port, TArguments... arguments) {
    auto channel = std::make_unique<TChannel>(SystemClock(), arguments...);
    channel->SetHost("127.0.0.1");
    channel->SetPort(port);
    return Opened(std::move(channel), false);
}

TScale OpenOurSerial(const std::string& name) {
    auto channel = std::make_unique<TDevCommRS232>(SystemClock());
    channel->SetPort(name);
    channel->SetBaudRate(br115200);
    channel->SetDataBits(dbEight);
    channel->SetStopBits(sbOneStopBit);
    channel->SetParity(prNone);
    channel->SetFlowControl(fcNone);
    return Opened(std::move(channel), true);
}

void MeasureAll(const TPeerPlace& peer, bool quick) {
    const TCounts network = quick ? TCounts{20, 3} : TCounts{100, 101};
    const TCounts serial = quick ? TCounts{2, 3} : TCounts{10, 21};
    const auto tcp = [&] { return OpenOurSocket<TDevCommTCP>(peer.tcpPort); };
    const auto udp = [&] { return OpenOurSocket<TDevCommUDP>(peer.udpPort, std::uint16_t{0}); };
    const auto line = [&] { return OpenOurSerial(peer.serialPort); };
    const auto measure = [&](const std::string& how, TBareWait wait, std::optional<double> ofLine) {
        Measure(
            "TCP, " + how, tcp, [&] { return OpenBareTcp(peer.tcpPort, wait); }, network, kAtMost);
        Measure(
            "UDP, " + how, udp, [&] { return OpenBareUdp(peer.udpPort, wait); }, network, kAtMost);
        Measure(
            "a line of 115,200 bit/s, " + how, line,
            [&] { return OpenBareSerial(peer.serialPort, wait); }, serial, ofLine);
    };
    measure("the other side waiting in the same steps", TBareWait::InSteps, kAtMost);
    measure("the other side waiting in its read", TBareWait::Block, {});
}

#ifdef _WIN32
int MeasureAlone(bool) {
    std::fprintf(stderr, "The peer runs on Linux: --peer TCP UDP COM\n");
    return 2;
}
int ServeOthers(const char*) {
    return MeasureAlone(false);
}
#else
int MeasureAlone(bool quick) {
    const TPeer peer;
    MeasureAll(peer.Place(), quick);
    return 0;
}

int ServeOthers(const char* path) {
    TPeer peer;
    std::FILE* const file = std::fopen(path, "w");
    if (file == nullptr) throw std::runtime_error(std::string("cannot write ") + path);
    std::fprintf(file, "%d %d %s\n", peer.Place().tcpPort, peer.Place().udpPort,
                 peer.Place().serialPort.c_str());
    std::fclose(file);
    peer.Wait();
    return 0;
}
#endif

std::uint16_t PortOf(const std::string& text) {
    return static_cast<std::uint16_t>(std::stoi(text));
}

int Run(int count, char** arguments) {
    const std::vector<std::string> all(arguments + 1, arguments + count);
    const bool quick = IsQuick(count, arguments);
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == "--serve" && i + 1 < all.size()) return ServeOthers(all[i + 1].c_str());
        if (all[i] != "--peer" || i + 3 >= all.size()) continue;
        MeasureAll({PortOf(all[i + 1]), PortOf(all[i + 2]), all[i + 3]}, quick);
        return 0;
    }
    return MeasureAlone(quick);
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
    try {
        return tolvane::bench::Run(count, arguments);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}
