#include "tests/support/program/ScaleShop.h"

#include <utility>

namespace tolvane::test {

using simulator::TRequest;
using simulator::TVirtualScale;

TScaleShop::TScaleShop(const std::vector<int>& labelModes) {
    for (const int mode : labelModes) {
        const std::size_t index = scales_.size();
        simulator::TScaleOptions options;
        options.scale = simulator::DefaultProperties(simulator::TModel::S300);
        options.scale.labelMode = mode;
        options.keepsRequests = false;
        options.onExchange = [this, index](const simulator::TBytes& frame, const auto&) {
            const std::lock_guard lock(mutex_);
            if (onRequest_) onRequest_(index, simulator::DecodeRequest(frame));
        };
        scales_.push_back(std::make_unique<TVirtualScale>(std::move(options)));
        scales_.back()->Start();
    }
    for (const char* name : {"state", "locks"})
        std::filesystem::create_directory(folder_ / name);
    PutFile(folder_ / "tolvane.conf", "[tolvane]\r\n");
    WriteList();
}

void TScaleShop::WriteList() const {
    std::string list;
    for (std::size_t i = 0; i < scales_.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        list += "[SCALE" + number + "]\r\nScaleNumb=" + number + "\r\nScaleName=S300 " + number +
                "\r\nTCPAddress=127.0.0.1\r\nTCPPort=" + std::to_string(scales_[i]->Port()) +
                "\r\nChecked=1\r\nBaudRate=4\r\nScaleType=300\r\nEncoding=2\r\nScaleAddr=0\r\n"
                "CommType=1\r\n";
    }
    PutFile(folder_ / "Tolvane.ini", list);
}

std::vector<simulator::TScaleState> TScaleShop::States() const {
    std::vector<simulator::TScaleState> states;
    for (const auto& scale : scales_)
        states.push_back(scale->State());
    return states;
}

void TScaleShop::OnRequest(TOnRequest onRequest) {
    const std::lock_guard lock(mutex_);
    onRequest_ = std::move(onRequest);
}

std::vector<std::string> TScaleShop::Line(const std::vector<std::string>& arguments) const {
    std::vector<std::string> line{TOLVANE_PROGRAM};
    line.insert(line.end(), arguments.begin(), arguments.end());
    const auto add = [&](const char* option, const char* name) {
        line.insert(line.end(), {option, (folder_ / name).string()});
    };
    add("--config", "tolvane.conf");
    add("--ini", "Tolvane.ini");
    add("--state", "state");
    return line;
}

std::unique_ptr<TProgramRun> TScaleShop::Start(const std::vector<std::string>& arguments,
                                               const std::filesystem::path& folder) const {
    std::filesystem::create_directories(folder_ / folder);
    return std::make_unique<TProgramRun>(
        Line(arguments), folder_ / folder,
        std::vector<std::string>{"FIREBIRD_LOCK=" + (folder_ / "locks").string()});
}

}  // namespace tolvane::test
