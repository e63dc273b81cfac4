#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

// The command line as the subcommands declare it, without CLI11, which takes several seconds to compile.
namespace qnl::commands {

/// An option while it is being declared; each function gives the same option again.
class Option {
public:
    explicit Option(CLI::Option& option) : option_(&option) {}

    /// What stands for the value in the help.
    Option& Type(const std::string& name);
    Option& Required();
    /// Tells in the help that the value which the variable holds now is the default.
    Option& ShowDefault();
    /// `check` gives an empty text for a good value, else what is wrong with it.
    Option& Check(std::function<std::string(const std::string&)> check);
    /// Only these words, which stand for the value in the help, and other words for them.
    Option& OneOf(const std::vector<std::string>& words,
                  const std::map<std::string, std::string>& synonyms = {});
    Option& Between(int lowest, int highest);
    /// Numbers within these bounds, finite ones only; `limit` tells them in the help.
    Option& Between(double lowest, double highest, const std::string& limit);
    /// All values in one word, with commas between them.
    Option& CommaSeparated();
    /// Names of options that are there already.
    Option& Needs(const std::string& other);
    Option& Excludes(const std::string& other);

private:
    CLI::Option* option_;
};

/// A subcommand while it is being declared.
class Subcommand {
public:
    explicit Subcommand(CLI::App& app) : app_(&app) {}

    /// An option, or a positional word when `name` has no dashes, whose value goes to `target`: a text, an
    /// int, a double, a vector of these, or an optional double.
    template <typename Value>
    Option Add(const std::string& name, Value& target, const std::string& help);
    /// Sets `target` when given; several names stand with commas between them.
    Option AddFlag(const std::string& names, bool& target, const std::string& help);

private:
    CLI::App* app_;
};

/// What the help of a subcommand says, laid out by ManualPage.
struct SubcommandTexts {
    std::string name;
    std::string purpose;               ///< one line, for the list of subcommands
    std::string description;           ///< what it reads and writes
    std::vector<std::string> example;  ///< commands, one after the other, in a folder beside `examples`
};

/// The program frozenlayer and its subcommands.
class Program {
public:
    Program();
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Makes a subcommand whose help closes with the worked example and the exit codes. `perform` gives
    /// whether it did what it was asked for, and leaves the telling of faults to the program.
    Subcommand AddSubcommand(const SubcommandTexts& texts, std::function<bool()> perform);

    /// Chooses the subcommand that the words name. Gives the exit code when there is none to be performed: 0
    /// after help or version, which are printed, 1 after a word that cannot be understood.
    std::optional<int> Choose(int argc, const char* const* argv);

    /// Performs the chosen subcommand. An exception out of it and the faults recorded meanwhile are told on
    /// standard error, after what stands on standard output. Gives the exit code: 0 when it did what it was
    /// asked for, without a fault, and all of its output could be written; 128 and the signal's number when
    /// it was interrupted; else 1.
    int Perform();

private:
    std::unique_ptr<CLI::App> app_;
    std::function<bool()> chosen_;
};

}  // namespace qnl::commands
