#include "Subcommand.h"

#include <exception>
#include <iostream>
#include <sstream>
#include <utility>

namespace qnl {

namespace {

constexpr const char* kExitCodes =
    "Exit codes: 0 success, 1 otherwise. The console program QNL3DFrozenLayer has others: 1 normal end,\n"
    "-1000 material, -2000 mesh, -5000 exception (a POSIX shell shows 24, 48, 120), 2 wrong usage.";

int PerformGuarded(const std::function<int()>& perform) {
    try {
        return perform();
    } catch (const std::bad_alloc&) {
        std::cerr << "frozenlayer: out of memory\n";
    } catch (const std::exception& failure) {
        std::cerr << std::string("frozenlayer: ") + failure.what() + "\n";
    }
    return 1;
}

}  // namespace

std::string HelpText(const std::string& text) {
    constexpr std::size_t kWidth = 80;
    std::istringstream words(text);
    std::string help;
    std::size_t used = 0;
    for (std::string word; words >> word; used += word.size() + 1) {
        if (used + word.size() > kWidth) {
            help += "\n";
            used = 0;
        }
        help += (used == 0 ? "" : " ") + word;
    }
    return help;
}

CLI::App& AddSubcommand(CLI::App& app, int& exitCode, const std::string& name, const std::string& purpose,
                        const std::string& example, std::function<int()> perform) {
    CLI::App& subcommand = *app.add_subcommand(name, purpose);
    subcommand.footer("Example:\n  " + example + "\n\n" + kExitCodes);
    subcommand.callback([&exitCode, perform = std::move(perform)] { exitCode = PerformGuarded(perform); });
    return subcommand;
}

}  // namespace qnl
