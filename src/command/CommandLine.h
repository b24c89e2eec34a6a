#pragma once

// Private to this folder: reads the library for command lines, which takes long to compile.

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "command/Options.h"
#include "command/Settings.h"

namespace tolvane {

inline const std::map<std::string, int> kPrices = {{"retail", 0}, {"wholesale", 1}};
inline const std::map<std::string, int> kNames = {
    {"ecr", 0}, {"name", 1}, {"label", 2}, {"number", 3}};

// A command line with all commands and options, to be read once.
class TCommandLine {
public:
    TCommandLine();
    TCommandLine(const TCommandLine&) = delete;
    TCommandLine& operator=(const TCommandLine&) = delete;

    // Reads what the line says; nothing of the rest. Throws CLI::ParseError.
    void ReadLine(std::vector<std::string> arguments);
    // The words that say what the settings say of the options that the line could have and has not.
    std::vector<std::string> Words(const std::vector<TSetting>& settings) const;
    const std::string& Config() const { return config_; }
    // What was read, with the defaults. Throws CLI::ParseError for a value that cannot be.
    TCommandOptions Take(const TEnvironment& environment);
    // Of the command that was read.
    std::string Help() const;
    // What is wrong with the line.
    std::string Message(const CLI::ParseError& error) const;
    // All commands and options, for those who describe them.
    const CLI::App& App() const { return app_; }

private:
    // CLI11 would read a path in the system's own encoding.
    static CLI::Option* AddPath(CLI::App& app, const std::string& name, std::filesystem::path& path,
                                const std::string& help);
    void AddPlaces();
    void AddRun();
    void AddOutput();
    CLI::App* Verb(const std::string& name, TVerb verb, std::string_view help);
    void AddChoices(CLI::App* app);
    void AddMaxAge(CLI::App* app);
    void AddReport(CLI::App* app);
    CLI::Option* AddNumbers(CLI::App* app, const std::string& help);
    void AddCheck();
    void AddWrite();
    void AddDelete();
    void AddOtherCommands();

    static void CheckForEmptyValues(const std::vector<std::string>& arguments);
    void TakeValues();
    void TakeNumbers();
    void CheckDelete() const;
    void CheckDiscover() const;
    void TakeSerialPort(const std::string& text);

    // The program itself, then the command and the command's command.
    std::vector<const CLI::App*> Chosen() const;
    std::vector<const CLI::App*> All() const;
    // Their options, and the commands under them.
    static std::vector<std::string> KnownWords(const std::vector<const CLI::App*>& apps);

    // Texts that become other types after parsing.
    struct TRaw {
        std::string deadline{};
        std::string lockWait{};
        std::string maxAge{};
        std::string price{};
        std::string name1{};
        std::string name2{};
        std::vector<std::string> serial{};
        std::vector<std::int32_t> numbers{};
        bool all = false;
        bool json = false;
        bool csv = false;
        bool noProgress = false;
        bool yes = false;
    };

    CLI::App app_;
    TCommandOptions options_;
    TRaw raw_;
    std::string config_;
};

}  // namespace tolvane
