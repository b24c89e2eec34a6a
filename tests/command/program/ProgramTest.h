#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "database/Attachment.h"
#include "simulator/VirtualScale.h"
#include "tests/command/program/Process.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::test {

using simulator::TModel;
using simulator::TScaleOptions;
using simulator::TVirtualScale;

// What a program has done.
struct TRun {
    int exitCode = -1;  // -1: it did not end
    std::string out{};
    std::string err{};

    nlohmann::json Json() const;
    // The rows of a table of the report, and one row by the number in it.
    nlohmann::json Rows(const std::string& table = "scales") const;
    nlohmann::json Scale(int number) const;
};

using TWords = std::vector<std::string>;

// What --log has written: an object for each line.
std::vector<nlohmann::json> EventsIn(const std::filesystem::path& log);

// The built program in a shop of its own: a database, scales in this process, a scale list, a state
// folder. The shop's articles are those of shop.sql.
class TProgramTest : public testing::Test {
protected:
    TProgramTest();
    ~TProgramTest() override;

    // A scale on TCP, or on what the options say, that is in the scale list when it is on TCP. It
    // reports label mode 2 and `capacity_` articles.
    TVirtualScale& AddScale(int number, TModel model = TModel::S300, TScaleOptions options = {});
    // One that nobody answers for: its port is closed.
    void AddDeadScale(int number);
    // A section of the scale list; CommType 0: `address` is a COM port.
    void AddToList(int number, TModel model, const std::string& address, std::uint16_t port,
                   int commType, bool checked = true);

    // Runs the program with the shop's scale list, database and state folder.
    TRun Run(const TWords& words);
    // With nothing added.
    TRun RunBare(const TWords& words);
    std::unique_ptr<TProcess> Start(const TWords& words);
    std::unique_ptr<TProcess> StartBare(const TWords& words);
    std::unique_ptr<TProcess> StartIn(const TWords& words, const std::string& name);
    // What a started program has printed.
    TRun Ended(TProcess& process);
    // `name`: of the folder that takes the output.
    TRun Ended(TProcess& process, const std::string& name);
    // Run while another program runs.
    TRun RunBeside(const TWords& words);
    // What Run adds.
    TWords WithShop(const TWords& words);

    // The login of a database on the server, the demo shop's.
    TWords OnServer(const TWords& words);

    static constexpr std::chrono::seconds kSoon{15};
    // Whether it becomes so in that time.
    template <class Condition>
    static bool Soon(const Condition& isSo) {
        const auto end = std::chrono::steady_clock::now() + kSoon;
        while (!isSo()) {
            if (std::chrono::steady_clock::now() >= end) return false;
            std::this_thread::yield();
        }
        return true;
    }

    // Changes the shop's database, UTF-8.
    void Sql(const std::string& statement) const;
    // The login of the shop's database.
    TDatabaseLogin Login() const;

    std::filesystem::path StateFolder() const { return folder_ / state_; }
    std::filesystem::path LedgerOf(int number) const {
        return StateFolder() / ("scale-" + std::to_string(number) + ".json");
    }

    TScratchFolder folder_;
    std::map<std::string, std::string> environment_{};
    int capacity_ = 4000;
    std::string state_ = "state";
    bool outIsFull_ = false;  // of the programs started from now on
    std::string list_{};      // the scale list, code page 1251

private:
    TStart StartOf(const TWords& words, const std::string& name) const;
    std::filesystem::path database_;
    std::vector<std::unique_ptr<TVirtualScale>> scales_{};
};

// The price that a scale holds, in hundredths; -1 without one.
int PriceOf(const TVirtualScale& scale, int number);
// The numbers that a scale holds.
std::vector<int> NumbersOf(const TVirtualScale& scale);
// How often a command has come, by its code.
int CountOf(const TVirtualScale& scale, std::uint8_t command);

}  // namespace tolvane::test
