// Default paths and the nearest word.

#include <gtest/gtest.h>

#include <map>

#include "command/DefaultPaths.h"
#include "command/Nearest.h"

namespace tolvane::test {
namespace {

TEnvironment Variables(std::map<std::string, std::string> variables) {
    return [variables = std::move(variables)](const std::string& name) {
        const auto found = variables.find(name);
        return found != variables.end() ? std::optional(found->second) : std::nullopt;
    };
}

TEST(DefaultPaths, AreThoseOfAServiceOrAUser) {
    const std::map<std::string, std::string> all = {
        {"HOME", "/home/u"}, {"XDG_STATE_HOME", "/x"}, {"STATE_DIRECTORY", "/var/lib/tolvane"}};
    EXPECT_EQ(DefaultConfigFile(Variables(all)), "/etc/tolvane/tolvane.conf");
    EXPECT_EQ(DefaultScaleList(Variables(all)), "/etc/tolvane/Tolvane.ini");
    EXPECT_EQ(DefaultStateFolder(Variables(all)), "/var/lib/tolvane");
    EXPECT_EQ(DefaultStateFolder(Variables({{"HOME", "/home/u"}, {"XDG_STATE_HOME", "/x"}})),
              "/x/tolvane");
    EXPECT_EQ(DefaultStateFolder(Variables({{"HOME", "/home/u"}})), "/home/u/.local/state/tolvane");
}

TEST(DefaultPaths, TakeAnEmptyVariableForNone) {
    EXPECT_EQ(DefaultStateFolder(Variables({{"HOME", "/home/u"},
                                            {"XDG_STATE_HOME", ""},
                                            {"STATE_DIRECTORY", ""},
                                            {"ProgramData", ""}})),
              "/home/u/.local/state/tolvane");
}

TEST(DefaultPaths, AreInTheSharedFolderOnWindows) {
    const TEnvironment windows = Variables({{"ProgramData", "C:\\ProgramData"}});
    EXPECT_EQ(DefaultConfigFile(windows), "C:\\ProgramData\\Tolvane\\tolvane.conf");
    EXPECT_EQ(DefaultScaleList(windows), "C:\\ProgramData\\Tolvane\\Tolvane.ini");
    EXPECT_EQ(DefaultStateFolder(windows), "C:\\ProgramData\\Tolvane\\state");
}

TEST(Nearest, IsTheWordWithTheFewestChanges) {
    const std::vector<std::string> words = {"check", "write", "status", "scales", "test"};
    EXPECT_EQ(Nearest("chek", words), "check");
    EXPECT_EQ(Nearest("tets", words), "test");
    EXPECT_EQ(Nearest("toss", words), "");  // two changes of four letters
    EXPECT_EQ(Nearest("tes", words), "test");
    EXPECT_EQ(Nearest("stats", words), "status");
    EXPECT_EQ(Nearest("scale", words), "scales");
    EXPECT_EQ(Nearest("write", words), "write");
    EXPECT_EQ(Nearest("nothing", words), "");
    EXPECT_EQ(Nearest("", words), "");
    EXPECT_EQ(Nearest("x", {}), "");
}

}  // namespace
}  // namespace tolvane::test
