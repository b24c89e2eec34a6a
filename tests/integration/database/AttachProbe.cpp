// Attaches to a database as another user or in another environment than the tests'.
//
//   attach_probe DATABASE [USER [PASSWORD]]
//
// Prints the user that the database sees and the number of its articles, or the error, and ends
// with 1 then. Also says when attaching has changed what a stop signal does, and stops itself twice
// meanwhile.

#include <csignal>
#include <iostream>

#include "tests/integration/database/Shop.h"

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM};

void Stop(int) {}

void SendStops() {
    for (const int signal : kSignals) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler != Stop) std::cout << "signal " << signal << " is not ours\n";
        std::raise(signal);
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    tolvane::TDatabaseLogin login{.database = arguments[1]};
    if (argumentCount > 2) login.user = arguments[2];
    if (argumentCount > 3) login.password = arguments[3];
    for (const int signal : kSignals)
        std::signal(signal, Stop);
    try {
        tolvane::TAttachment attachment(login);
        SendStops();
        std::cout << tolvane::test::Ask(attachment,
                                        "select trim(current_user) || ' ' || (select count(*) from "
                                        "PLUES) from RDB$DATABASE")
                  << '\n';
        return 0;
    } catch (const tolvane::TDatabaseError& error) {
        std::cout << tolvane::ToUtf8(error.what()) << '\n';
        return 1;
    }
}
