#include "Subcommand.h"

#include <exception>
#include <iostream>
#include <utility>

namespace qnl {

namespace {

constexpr const char* kExitCodes =
    "EXIT STATUS\n"
    "  0 success, 1 otherwise. The console program QNL3DFrozenLayer has others: 1 normal\n"
    "  end, -1000 material, -2000 mesh, -5000 exception (a POSIX shell shows 24, 48,\n"
    "  120), 2 wrong usage.";

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

CLI::App& AddSubcommand(CLI::App& app, int& exitCode, const SubcommandTexts& texts,
                        std::function<int()> perform) {
    CLI::App& subcommand = *app.add_subcommand(texts.name, texts.purpose + "\n" + texts.description);
    subcommand.footer("EXAMPLE\n  " + CLI::detail::join(texts.example, "\n  ") + "\n\n" + kExitCodes);
    subcommand.callback([&exitCode, perform = std::move(perform)] { exitCode = PerformGuarded(perform); });
    return subcommand;
}

}  // namespace qnl
