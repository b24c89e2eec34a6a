#include <asio/serial_port.hpp>
#include <asio/steady_timer.hpp>
#include <utility>

#include "simulator/StreamLink.h"
#include "simulator/Transport.h"

namespace tolvane::simulator {

namespace {

class TSerialLink : public TStreamLink<asio::serial_port> {
public:
    TSerialLink(asio::io_context& io, std::string device, unsigned baudRate, TAnswer answer)
        : TStreamLink(asio::serial_port(io), std::move(answer)),
          device_(std::move(device)),
          baudRate_(baudRate),
          retry_(io) {}

    void Open() {
        using asio::serial_port;
        Stream().open(device_);
        Stream().set_option(serial_port::baud_rate(baudRate_));
        Stream().set_option(serial_port::character_size(8));
        Stream().set_option(serial_port::stop_bits(serial_port::stop_bits::one));
        Stream().set_option(serial_port::parity(serial_port::parity::none));
        Stream().set_option(serial_port::flow_control(serial_port::flow_control::none));
        Read();
    }

    void Close() {
        closed_ = true;
        std::error_code ignored;
        Stream().close(ignored);
        retry_.cancel();
    }

    const std::string& Device() const { return device_; }

protected:
    // A fault that ends a connection takes the port away until the scale is started again.
    void End(TEnding) override { Close(); }

    void Broken() override {
        if (closed_) return;
        std::error_code ignored;
        Stream().close(ignored);
        OpenLater();
    }

private:
    void OpenLater() {
        retry_.expires_after(std::chrono::milliseconds(100));
        const auto self = std::static_pointer_cast<TSerialLink>(shared_from_this());
        retry_.async_wait([self](const std::error_code& error) {
            if (error || self->closed_) return;
            try {
                self->Open();
            } catch (const std::system_error&) {
                self->Broken();
            }
        });
    }

    const std::string device_;
    const unsigned baudRate_;
    asio::steady_timer retry_;
    bool closed_ = false;
};

class TSerialTransport : public TTransport {
public:
    explicit TSerialTransport(std::shared_ptr<TSerialLink> link) : link_(std::move(link)) {}
    void Close() override { link_->Close(); }
    std::string Endpoint() const override { return "serial " + link_->Device(); }
    std::string Device() const override { return link_->Device(); }

private:
    std::shared_ptr<TSerialLink> link_;
};

}  // namespace

std::shared_ptr<TTransport> ListenSerial(asio::io_context& io, const std::string& device,
                                         unsigned baudRate, TAnswer answer) {
    const auto link = std::make_shared<TSerialLink>(io, device, baudRate, std::move(answer));
    try {
        link->Open();
    } catch (const std::system_error& error) {
        throw std::system_error(error.code(), device);
    }
    return std::make_shared<TSerialTransport>(link);
}

}  // namespace tolvane::simulator
