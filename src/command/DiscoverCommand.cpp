// The network modules that answer a search.

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "comm/DeviceDiscovery.h"
#include "command/Command.h"
#include "command/EnglishWords.h"
#include "system/Sockets.h"
#include "text/Cp1251.h"
#include "text/IpAddress.h"

namespace tolvane {
namespace {

// Why a probe could not ask, and what to do.
std::string FailureTextOf(const TProbeFailure& failure) {
    const std::string why = ToUtf8(failure.text) + ". ";
    switch (failure.step) {
        case TProbeStep::Open:
            if (failure.localPort == 0)
                return "No UDP port can be opened: " + why + "Search again.";
            return "UDP port " + std::to_string(failure.localPort) + " cannot be opened: " + why +
                   "End the program that has it, such as another search, and search again.";
        case TProbeStep::Send:
            return "The network cannot be asked: " + why +
                   "Connect this computer to the network of the scales, and search again.";
        case TProbeStep::Receive:
            return "The answers cannot be read: " + why + "Search again.";
    }
    return {};
}

// Without a default route there is no way to all networks at once.
TDiscoveryTarget SearchTarget() {
    TDiscoveryTarget target;
    for (const std::uint32_t address : BroadcastAddresses())
        target.otherwise.push_back(IpV4Text(address));
    return target;
}

// A search, and what it has come to.
class TModuleSearch {
public:
    void Run(TClock& clock) {
        const std::atomic<bool> stop = false;
        FindDevices(
            clock, stop, [this](const std::vector<TFoundDevice>& found) { Add(found); },
            SearchTarget(), &MakeProbeSocket,
            [this](const TProbeFailure& failure) { Add(failure); });
        std::sort(table_.rows.begin(), table_.rows.end());
        table_.rows.erase(std::unique(table_.rows.begin(), table_.rows.end()), table_.rows.end());
    }
    void Tell(std::ostream& err, bool quiet) const {
        for (const std::string& failure : failures_)
            err << "tolvane: " << failure << std::endl;
        if (table_.rows.empty() && failures_.empty() && !quiet)
            err << "No network module has answered." << std::endl;
    }
    TExitCode ExitCode() const {
        if (failures_.empty()) return TExitCode::Done;
        return table_.rows.empty() ? TExitCode::NoScaleReached : TExitCode::SomeFailed;
    }
    const TReportTable& Table() const { return table_; }

private:
    void Add(const std::vector<TFoundDevice>& found) {
        for (const TFoundDevice& device : found)
            table_.rows.push_back(
                {device.address,
                 std::string(device.kind == TDeviceKind::UdpModule ? "UDP" : "TCP")});
    }
    // Probes that fail for the same reason tell it once.
    void Add(const TProbeFailure& failure) {
        std::string text = InEnglish(FailureTextOf(failure));
        if (std::find(failures_.begin(), failures_.end(), text) == failures_.end())
            failures_.push_back(std::move(text));
    }

    TReportTable table_{
        .key = "modules", .title = {}, .columns = {{"address", "Address"}, {"kind", "Kind"}}};
    std::vector<std::string> failures_;
};

}  // namespace

TAnswer DiscoverModules(const TCommandOptions& options, TWorld& world) {
    TModuleSearch search;
    search.Run(world.clock);
    search.Tell(world.err, options.quiet);
    return {.report = {.command = "discover", .tables = {search.Table()}},
            .exitCode = search.ExitCode()};
}

}  // namespace tolvane
