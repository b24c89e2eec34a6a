#include "tests/bench/articles/OtherPrograms.h"

#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace tolvane::bench {
namespace {

std::string Quoted(const std::string& argument) {
    return '\'' + argument + '\'';
}

}  // namespace

std::vector<double> NumbersOf(const std::vector<std::string>& command) {
    std::string line;
    for (const std::string& argument : command)
        line += Quoted(argument) + ' ';
    std::FILE* const pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("no program can be run");
    std::string output;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        output += static_cast<char>(c);
    if (pclose(pipe) != 0) throw std::runtime_error(command.front() + " failed");
    std::istringstream numbers(output);
    std::vector<double> values;
    for (double value = 0; numbers >> value;)
        values.push_back(value);
    return values;
}

std::vector<std::string> WithLogin(std::vector<std::string> command,
                                   const test::TTestDatabase& database) {
    command.push_back(test::Server().address + ':' + database.File().string());
    command.push_back(test::Server().password);
    return command;
}

TLoadOnce::TLoadOnce(const std::vector<double>& numbers)
    : milliseconds(numbers.at(0)),
      before(numbers.at(1)),
      most(numbers.at(2)),
      after(numbers.at(3)),
      table(numbers.at(4)) {}

}  // namespace tolvane::bench
