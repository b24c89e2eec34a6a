#include "simulator/ProgramOptions.h"

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <vector>

#include "simulator/Hex.h"

namespace tolvane::simulator {

namespace {

// The options of the command line, before they override a loaded state.
struct TArguments {
    std::string model;
    std::string codeTable;
    std::string onWrongAddress = "silent";
    std::string onBadChecksum = "silent";
    std::string loadPath;
    std::optional<std::string> version;
    std::optional<int> capacity;
    std::optional<int> labelMode;
    std::optional<int> address;
    std::vector<std::string> faults;
    std::string faultScript;
    std::optional<std::uint32_t> seed;
    std::optional<std::uint16_t> tcpPort;
    std::optional<std::string> ptyLink;
    std::string discovery;
    int discoveryReplies = 1;
    std::string discoveryReply;
    std::optional<std::uint16_t> httpPort;
    std::string httpHost = TPageOptions().host;
    int barcodePrefix = 20;
};

CLI::Validator Names(std::initializer_list<std::string> names) {
    return CLI::IsMember(std::vector<std::string>(names));
}

void AddScaleOptions(CLI::App& app, TArguments& arguments, TProgramOptions& program) {
    app.add_option("--model", arguments.model, "EVL (default), ETS or S300")
        ->check(Names({"EVL", "ETS", "S300"}));
    app.add_option("--label-mode", arguments.labelMode, "byte 16 of the version reply")
        ->check(CLI::Range(0, 255));
    app.add_option("--capacity", arguments.capacity, "highest article number")
        ->check(CLI::Range(1, 65535));
    app.add_option("--version-text", arguments.version, "four characters");
    app.add_option("--version-reply-length", program.scale.versionReplyLength,
                   "data bytes of the version reply, 17 by default")
        ->check(CLI::Range(1, 255));
    app.add_option("--address", arguments.address, "the scale's address")
        ->check(CLI::Range(0, 255));
    app.add_option("--code-table", arguments.codeTable,
                   "how texts are shown: win, pc855 or pc866 (default)")
        ->check(Names({"win", "pc855", "pc866"}));
    app.add_option("--on-wrong-address", arguments.onWrongAddress, "silent (default) or error")
        ->check(Names({"silent", "error"}));
    app.add_option("--on-bad-checksum", arguments.onBadChecksum, "silent (default) or error")
        ->check(Names({"silent", "error"}));
}

void AddLinkOptions(CLI::App& app, TArguments& arguments, TProgramOptions& program) {
    app.add_option("--host", program.scale.host, "IP address to listen on, 127.0.0.1 by default");
    app.add_option("--tcp,--port", arguments.tcpPort,
                   "TCP port, 0 for any free one; that is what it does without any link option");
    app.add_option("--udp", program.scale.udpPort,
                   "UDP port: scales have 1001; 0 for any free one");
    app.add_option("--serial", program.scale.serialDevice, "serial port, such as /dev/ttyS0, COM5");
    app.add_option("--baud", program.scale.baudRate, "speed of the serial port, 9600 by default");
    app.add_option("--pty", arguments.ptyLink,
                   "makes a serial line without hardware, with a symbolic link for clients here");
    app.add_option("--discovery", arguments.discovery,
                   "answers searches for UDP modules (udp), TCP converters (tcp) or both (all)")
        ->check(Names({"udp", "tcp", "all"}));
    app.add_option("--discovery-replies", arguments.discoveryReplies, "datagrams per search, 1")
        ->check(CLI::Range(0, 10000));
    app.add_option("--discovery-reply", arguments.discoveryReply,
                   "their bytes, hexadecimal; \"-\" for none");
}

void AddPageOptions(CLI::App& app, TArguments& arguments) {
    CLI::Option* http = app.add_option("--http", arguments.httpPort,
                                       "port of a page that shows the scale, 0 for any free one");
    app.add_option("--http-host", arguments.httpHost,
                   "IP address to serve the page on, 127.0.0.1 by default")
        ->needs(http);
    app.add_option("--barcode-prefix", arguments.barcodePrefix,
                   "what the barcodes on the page's labels begin with, 20 (default) to 29")
        ->check(CLI::Range(20, 29))
        ->needs(http);
}

void AddFaultOptions(CLI::App& app, TArguments& arguments) {
    app.add_option("--fault", arguments.faults,
                   "KIND,key=value,... as simulator/README.md lists them; may be given again")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    app.add_option("--fault-script", arguments.faultScript, "JSON file with a list of faults");
    app.add_option("--seed", arguments.seed, "of the faults that come by chance");
}

void AddFileOptions(CLI::App& app, TArguments& arguments, TProgramOptions& program) {
    app.add_option("--load", arguments.loadPath, "state to start from");
    CLI::Option* save = app.add_option("--save", program.savePath, "file for the state on exit");
    app.add_flag("--save-on-weighing", program.saveOnWeighing,
                 "save also when the scale returns to weighing mode")
        ->needs(save);
    app.add_option("--ready-file", program.readyPath, "file for the \"ready\" lines");
    app.add_option("--show", program.showPath, "print a saved state as a table and end");
    app.add_flag("--print", program.print, "print on exit what the scale holds");
    app.add_flag("--trace", program.trace, "print every request and reply");
}

// A loaded state defines the scale; the command line overrides it.
void SetScale(const TArguments& arguments, TScaleOptions& scale) {
    if (!arguments.loadPath.empty()) {
        scale.initialState = LoadState(arguments.loadPath);
        scale.scale = scale.initialState->scale;
    }
    TScaleProperties& properties = scale.scale;
    if (!arguments.model.empty()) {
        const TScaleProperties before = properties;
        properties = DefaultProperties(*ModelByName(arguments.model));
        properties.labelMode = before.labelMode;
        properties.address = before.address;
        properties.codeTable = before.codeTable;
    }
    if (!arguments.codeTable.empty()) properties.codeTable = *CodeTableByName(arguments.codeTable);
    if (arguments.version) properties.version = *arguments.version;
    if (arguments.capacity) properties.capacity = *arguments.capacity;
    if (arguments.labelMode) properties.labelMode = *arguments.labelMode;
    if (arguments.address) properties.address = *arguments.address;
    scale.answersWrongAddress = arguments.onWrongAddress == "error";
    scale.answersBadChecksum = arguments.onBadChecksum == "error";
    scale.keepsRequests = false;
}

void SetLinks(const TArguments& arguments, TScaleOptions& scale) {
    scale.pty = arguments.ptyLink.has_value();
    scale.ptyLink = arguments.ptyLink.value_or("");
    const bool other = scale.udpPort || scale.pty || !scale.serialDevice.empty();
    scale.tcpPort = arguments.tcpPort;
    if (!other && !scale.tcpPort) scale.tcpPort = 0;

    const auto answer = [&](TProbe probe) {
        TProbeOptions options{.probe = probe, .replies = arguments.discoveryReplies};
        if (!arguments.discoveryReply.empty()) {
            const bool none = arguments.discoveryReply == "-";
            const auto bytes = FromHex(none ? "" : arguments.discoveryReply);
            if (!bytes) throw std::runtime_error("--discovery-reply is not hexadecimal");
            options.reply = *bytes;
        }
        scale.probes.push_back(options);
    };
    if (arguments.discovery == "udp" || arguments.discovery == "all") {
        answer(TProbe::Character);
        answer(TProbe::Find);
    }
    if (arguments.discovery == "tcp" || arguments.discovery == "all") answer(TProbe::Converter);
}

void SetFaults(const TArguments& arguments, TScaleOptions& scale) {
    if (!arguments.faultScript.empty()) scale.faults = LoadFaults(arguments.faultScript);
    for (const std::string& fault : arguments.faults)
        scale.faults.faults.push_back(FaultFromText(fault));
    if (arguments.seed) scale.faults.seed = *arguments.seed;
}

std::optional<TPageOptions> PageOf(const TArguments& arguments) {
    if (!arguments.httpPort) return std::nullopt;
    return TPageOptions{.host = arguments.httpHost,
                        .port = *arguments.httpPort,
                        .barcodePrefix = std::to_string(arguments.barcodePrefix)};
}

}  // namespace

TProgramOptions ParseProgramOptions(int argc, const char* const* argv) {
    TProgramOptions program;
    TArguments arguments;
    CLI::App app("A label scale in software: keeps what is written into it", "virtual-scale");
    app.set_version_flag("--version", "virtual-scale " TOLVANE_VERSION,
                         "Print the version and end");
    AddScaleOptions(app, arguments, program);
    AddLinkOptions(app, arguments, program);
    AddPageOptions(app, arguments);
    AddFaultOptions(app, arguments);
    AddFileOptions(app, arguments, program);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        program.exitCode = app.exit(error);
        return program;
    }
    SetScale(arguments, program.scale);
    SetLinks(arguments, program.scale);
    SetFaults(arguments, program.scale);
    program.page = PageOf(arguments);
    return program;
}

}  // namespace tolvane::simulator
