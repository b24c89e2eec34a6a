#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <asio/ip/tcp.hpp>
#include <csignal>
#include <filesystem>
#include <sstream>

#include "StreamClient.h"
#include "simulator/ScaleState.h"
#include "tests/support/ScratchFolder.h"

namespace tolvane::simulator {
namespace {

// The program virtual-scale as a child process, with what it prints.
class TProgram {
public:
    explicit TProgram(std::vector<std::string> arguments) {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) throw std::system_error(errno, std::generic_category());
        output_ = ::fdopen(pipe[0], "r");
        arguments.insert(arguments.begin(), TOLVANE_VIRTUAL_SCALE);
        std::vector<char*> texts;
        texts.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            texts.push_back(argument.data());
        texts.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addclose(&actions, pipe[0]);
        ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, pipe[1], STDERR_FILENO);
        const int failure = ::posix_spawn(&process_, TOLVANE_VIRTUAL_SCALE, &actions, nullptr,
                                          texts.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(pipe[1]);
        if (failure != 0) throw std::system_error(failure, std::generic_category());
    }
    ~TProgram() {
        if (process_ != 0) {
            ::kill(process_, SIGKILL);
            Wait();
        }
        std::fclose(output_);
    }
    TProgram(const TProgram&) = delete;
    TProgram& operator=(const TProgram&) = delete;

    std::string Line() {
        std::array<char, 1000> line{};
        const char* read = std::fgets(line.data(), static_cast<int>(line.size()), output_);
        return read == nullptr ? std::string() : std::string(line.data());
    }
    std::string Rest() {
        std::string all;
        for (std::string line = Line(); !line.empty(); line = Line())
            all += line;
        return all;
    }
    void Signal(int signal) const { ::kill(process_, signal); }
    int Wait() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t process_ = 0;
    std::FILE* output_ = nullptr;
};

class TProgramClient : public TStreamClient<asio::ip::tcp::socket> {
public:
    explicit TProgramClient(const std::string& ready) {
        const int port = std::stoi(ready.substr(ready.rfind(':') + 1));
        Stream().connect({asio::ip::make_address("127.0.0.1"), static_cast<std::uint16_t>(port)});
    }
};

class ProgramTest : public testing::TestWithParam<int> {
protected:
    std::string Path(const char* name) const { return (folder_ / name).string(); }

private:
    TScratchFolder folder_;
};

TEST_P(ProgramTest, ASignal_SavesAndPrintsWhatTheScaleHolds) {
    TProgram program({"--capacity", "300", "--save", Path("state.json"), "--ready-file",
                      Path("ready"), "--print"});
    const std::string ready = program.Line();
    ASSERT_TRUE(ready.starts_with("ready tcp 127.0.0.1:")) << ready;
    EXPECT_EQ(GetFile(Path("ready")), ready);
    TProgramClient client(ready);
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    EXPECT_EQ(client.Ask("04 0D 14 5D 14 40 15 64 15 14 DB 03", 7), Bytes("02 0D 14 5D 14 5D 03"));
    program.Signal(GetParam());
    const std::string table =
        "EVL, version 1.04, 300 articles at most, label mode 2, programming mode\n"
        "PLU  Price  Weight  Kind  Tare  Label  Days  Barcode  Name  Name 2\n"
        "300   1.50       -     -     -      -     -\n"
        "1 articles, 0 cleared, 2 requests, 0 refused\n";
    EXPECT_EQ(program.Rest(), table);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(LoadState(Path("state.json")).articles.at(300).price, 150);

    TProgram show({"--show", Path("state.json")});
    EXPECT_EQ(show.Rest(), table);
    EXPECT_EQ(show.Wait(), 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramTest, testing::Values(SIGTERM, SIGINT));

TEST_F(ProgramTest, ThePage_ShowsRequestsAndPassesFaultsOn) {
    TProgram program({"--http", "0", "--fault", "error,code=7,command=GetVersion"});
    TProgramClient scale(program.Line());
    const std::string ready = program.Line();
    ASSERT_TRUE(ready.starts_with("ready http 127.0.0.1:")) << ready;
    EXPECT_EQ(scale.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    TProgramClient page(ready);
    const std::string request = "GET /content HTTP/1.1\r\nHost: localhost\r\n\r\n";
    asio::write(page.Stream(), asio::buffer(request));
    const TBytes response = page.Receive(1'000'000);
    const std::string content(response.begin(), response.end());
    EXPECT_NE(content.find("<td data-title=\"Command\">SetPrgMode</td>"), content.npos);
    EXPECT_NE(content.find("class=\"on\">error,command=GetVersion,code=7<"), content.npos);
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(ProgramTest, SaveOnWeighing_SavesBeforeItAnswers) {
    TProgram program({"--save", Path("state.json"), "--save-on-weighing", "--trace"});
    TProgramClient client(program.Line());
    EXPECT_EQ(client.Ask(kAskPrgMode, 7), Bytes(kPrgMode));
    EXPECT_FALSE(std::filesystem::exists(Path("state.json")));
    EXPECT_EQ(client.Ask(kAskWeightMode, 7), Bytes(kWeightMode));
    EXPECT_EQ(LoadState(Path("state.json")).requests.total, 2);
    EXPECT_EQ(program.Line(), "< " + kAskPrgMode + "\n");
    EXPECT_EQ(program.Line(), "> " + kPrgMode + "\n");
}

TEST_F(ProgramTest, Load_BringsTheArticlesBack) {
    TScaleState state;
    state.articles[3].number = 3;
    state.articles[3].price = 199;
    SaveState(state, Path("state.json"));
    TProgram program({"--load", Path("state.json"), "--print"});
    ASSERT_TRUE(program.Line().starts_with("ready tcp "));
    program.Signal(SIGTERM);
    EXPECT_NE(program.Rest().find("\n  3   1.99 "), std::string::npos);
    EXPECT_EQ(program.Wait(), 0);
}

TEST_F(ProgramTest, AFailure_IsReportedInOneLineAndByTheExitCode) {
    TProgram program({"--show", Path("none.json")});
    EXPECT_EQ(program.Rest(), "virtual-scale: cannot read " + Path("none.json") + "\n");
    EXPECT_EQ(program.Wait(), 1);
}

}  // namespace
}  // namespace tolvane::simulator
