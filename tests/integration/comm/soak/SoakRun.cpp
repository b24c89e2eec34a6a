#include "tests/integration/comm/soak/SoakRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>

#include "comm/TDevCommRS232.h"
#include "comm/TDevCommTCP.h"
#include "comm/TDevCommUDP.h"
#include "tests/support/FreeUdpPort.h"

namespace tolvane::test {
namespace {

constexpr TMilliseconds kRealWait{10};

simulator::TScaleOptions Options(TWire wire) {
    simulator::TScaleOptions options;
    options.tcpPort.reset();
    if (wire == TWire::Tcp) options.tcpPort = 0;
    if (wire == TWire::Udp) options.udpPort = 0;
    if (wire == TWire::Serial) {
        options.pty = true;
        options.ptyLink =
            (std::filesystem::temp_directory_path() / ("tolvane-soak-" + std::to_string(getpid())))
                .string();
    }
    return options;
}

template <class TCondition>
bool Within10Seconds(TCondition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::yield();
    }
    return true;
}

// A reply to the command that is right except for one bit of its only data byte, all of it offset.
simulator::TBytes WithFlippedBit(std::uint8_t command) {
    const auto sent = static_cast<std::uint8_t>(command + 0x14);
    return {0x02, 0x0D, 0x14, sent, 0x15, sent, 0x03};
}

// How many bytes a channel drops before the reply to this attempt; -1: everything.
int DroppedBytes(const TSoakExchange& exchange, int attempt) {
    if (exchange.fault == nullptr) return 0;
    const bool faulty = exchange.fault->fault.request == 0 || attempt == 1;
    return faulty ? exchange.fault->dropped : 0;
}

}  // namespace

TSoakRun::TSoakRun(TWire wire) : wire_(wire), scale_(Options(wire)) {
    hooks_ = {[this] { AwaitSurplus(); },
              [this] {
                  ++requests_;
                  ++attempts_;
              },
              [this](const TCmdBuffer& reply, std::int32_t ms) { BeginRead(reply, ms); },
              [this](const TCmdBuffer& reply) { EndRead(reply); }};
    driver_ = std::make_unique<TElicomScale>(MakeChannel(), wire == TWire::Serial, clock_);
    driver_->ScaleType = 16;
    Reopen();
}

TSoakRun::~TSoakRun() {
    if (port_ >= 0) close(port_);
}

std::unique_ptr<TDevComm> TSoakRun::MakeChannel() {
    if (wire_ == TWire::Tcp) {
        auto channel = std::make_unique<TSoakChannel<TDevCommTCP>>(hooks_, clock_);
        channel->SetHost("127.0.0.1");
        channel->SetPort(scale_.Scale().Port());
        address_ = "127.0.0.1:" + std::to_string(scale_.Scale().Port());
        return channel;
    }
    if (wire_ == TWire::Udp) {
        auto channel = std::make_unique<TSoakChannel<TDevCommUDP>>(hooks_, clock_, FreeUdpPort());
        channel->SetHost("127.0.0.1");
        channel->SetPort(scale_.Scale().UdpPort());
        address_ = "127.0.0.1:" + std::to_string(scale_.Scale().UdpPort());
        return channel;
    }
    auto channel = std::make_unique<TSoakChannel<TDevCommRS232>>(hooks_, clock_);
    channel->SetPort(scale_.Scale().SerialDevice());
    address_ = scale_.Scale().SerialDevice();
    return channel;
}

void TSoakRun::Do(const TSoakExchange& exchange) {
    exchange_ = &exchange;
    attempts_ = 0;
    Script(exchange);
    const auto started = std::chrono::steady_clock::now();
    const bool done = Command(exchange);
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(5));
    const std::string text = done ? std::string() : driver_->LastError;
    EXPECT_EQ(text, ExpectedText(exchange, wire_, address_));
    EXPECT_EQ(attempts_, exchange.expected.requests);
    EXPECT_TRUE(scale_.Await(requests_)) << "a request did not arrive";
    ++texts[text];
    CleanUp(exchange.expected.after);
}

// The scale has a fault for one exchange alone. A fault that withholds a reply stays for the next
// exchange, which gets that reply.
void TSoakRun::Script(const TSoakExchange& exchange) {
    if (exchange.expected.result == TResult::Stale) return;
    simulator::TFaultScript script;
    if (exchange.fault != nullptr) {
        script.faults.push_back(exchange.fault->fault);
        if (exchange.expected.result == TResult::DataBit)
            script.faults.back().bytes = WithFlippedBit(CodeOf(exchange.command));
    }
    if (scripted_ || exchange.fault != nullptr) scale_.Scale().SetFaults(std::move(script));
    scripted_ = exchange.fault != nullptr;
}

bool TSoakRun::Command(const TSoakExchange& exchange) {
    std::int32_t errCode = 0;
    const double price = exchange.hundredths / 100.0;
    switch (exchange.command) {
        case TSoakCommand::Version:
            return CheckVersion(errCode);
        case TSoakCommand::PrgMode:
            return driver_->SetPrgMode(errCode);
        case TSoakCommand::Price:
            return driver_->SetPrice(errCode, exchange.plu, price);
        case TSoakCommand::PriceWeight:
            return driver_->SetPrice(errCode, exchange.plu, price, 0);
        case TSoakCommand::PriceC:
            return driver_->SetPriceC(errCode, exchange.plu, price, true, 0, 1);
        case TSoakCommand::Param:
            return driver_->SetParam(errCode, exchange.plu, kSoakParameter, kSoakText, 0);
    }
    return false;
}

bool TSoakRun::CheckVersion(std::int32_t& errCode) {
    std::int32_t maxPlu = 0;
    std::int32_t mode = 0;
    std::string version;
    if (!driver_->GetVersion(errCode, maxPlu, mode, version)) return false;
    EXPECT_EQ(version, "1.04");
    EXPECT_EQ(maxPlu, 4000);
    EXPECT_EQ(mode, 2);
    return true;
}

void TSoakRun::CleanUp(TAfter after) {
    if (after == TAfter::Reopen) Reopen();
    if (after == TAfter::Restart) Restart();
    if (after == TAfter::Drain) Drain();
    if (after == TAfter::HangUp) {
        EXPECT_TRUE(Within10Seconds([&] { return !driver_->Channel->IsConnected(); }));
    }
}

void TSoakRun::Reopen() {
    EXPECT_TRUE(driver_->OpenChannel()) << driver_->LastError;
    surplus_ = 0;
    if (wire_ != TWire::Serial) return;
    if (port_ >= 0) close(port_);
    port_ = open(address_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
}

void TSoakRun::Restart() {
    scale_.Scale().Stop();
    scale_.Scale().Start();
    Reopen();
}

// Reads the replies that nobody has read yet: all of them must be there, and nothing else.
void TSoakRun::Drain() {
    const int planned = scale_.PlannedBytes(requests_);
    drained_ = exchange_->expected.result == TResult::Stale ? planned - lastReply_ : planned;
    TCmdBuffer rest;
    EXPECT_EQ(driver_->Channel->ReadAnswer(rest, 0, 0, 3000), kReadOk);
    EXPECT_EQ(static_cast<int>(rest.size()), drained_);
    drained_ = -1;
}

// Waits for the bytes that the purge before a request has to remove.
void TSoakRun::AwaitSurplus() const {
    if (wire_ != TWire::Serial || surplus_ <= 0) return;
    EXPECT_TRUE(Within10Seconds([&] {
        int waiting = 0;
        return ioctl(port_, FIONREAD, &waiting) == 0 && waiting >= surplus_;
    })) << surplus_
        << " bytes do not come";
}

void TSoakRun::BeginRead(const TCmdBuffer& reply, std::int32_t timeoutMs) {
    const TMilliseconds timeout(timeoutMs);
    clock_.leftAtLook = nullptr;
    if (drained_ >= 0 || exchange_->expected.result == TResult::Timeout)
        clock_.leftAtLook = [this, &reply, timeout](int look) {
            return Left(reply, look, timeout);
        };
    clock_.BeginRead(timeout);
}

TMilliseconds TSoakRun::Left(const TCmdBuffer& reply, int look, TMilliseconds timeout) const {
    const TMilliseconds over(0);
    const auto read = static_cast<int>(reply.size());
    if (drained_ >= 0) return read >= drained_ ? over : timeout;
    switch (exchange_->fault->silence) {
        case TSilence::AtOnce:
            return over;
        case TSilence::Wait:
            return look == 2 ? kRealWait : over;
        case TSilence::AfterBytes:
            break;
    }
    const int planned = scale_.PlannedBytes(requests_);
    return planned >= 0 && read >= planned ? over : timeout;
}

void TSoakRun::EndRead(const TCmdBuffer& reply) {
    clock_.EndRead();
    lastReply_ = static_cast<int>(reply.size());
    if (wire_ != TWire::Serial || drained_ >= 0) return;
    EXPECT_TRUE(scale_.Await(requests_)) << "a request did not arrive";
    const int dropped = DroppedBytes(*exchange_, attempts_);
    surplus_ = dropped < 0 ? 0 : scale_.PlannedBytes(requests_) - lastReply_ - dropped;
}

}  // namespace tolvane::test
