#include "commands/Subcommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "host/Interrupts.h"
#include "project/FaultReport.h"
#include "project/Warnings.h"
#include "text/ManualPage.h"
#include "text/NearestWord.h"
#include "text/NumberText.h"

namespace qnl::commands {

namespace {

constexpr int kSignalExit = 128;

constexpr const char* kExitCodes =
    "EXIT STATUS\n"
    "  0 success, 130 interrupted, 143 ended by request, 1 otherwise. The console program QNL3DFrozenLayer "
    "has others: 1 normal\n"
    "  end, -1000 material, -2000 mesh, -5000 exception (a POSIX shell shows 24, 48,\n"
    "  120), 2 wrong usage.";

/// What ended a subcommand early, in words; nothing for one that came to its end. `succeeded` receives what
/// it gave.
std::string PerformGuarded(const std::function<bool()>& perform, bool& succeeded) {
    try {
        succeeded = perform();
        return {};
    } catch (const std::bad_alloc&) {
        return "out of memory";
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

void Complain(const std::string& sentence) {
    std::cerr << "frozenlayer: " + sentence + "\n";
}

bool FlushOutput() {
    const bool flushed = static_cast<bool>(std::cout.flush());
    if (!flushed) {
        Complain("standard output cannot be written: free space, or send it elsewhere");
    }
    return flushed;
}

/// The faults that `complaint` does not tell already.
std::vector<Fault> FaultsBeside(const std::string& complaint) {
    std::vector<Fault> faults = TakeFaults();
    const auto told = [&](const Fault& fault) {
        return !fault.found.empty() && complaint.find(fault.found) != std::string::npos;
    };
    faults.erase(std::remove_if(faults.begin(), faults.end(), told), faults.end());
    return faults;
}

/// The one end of every subcommand. An interrupted one exits as shells have it.
int PerformToItsEnd(const std::function<bool()>& perform) {
    bool succeeded = false;
    std::string complaint = PerformGuarded(perform, succeeded);
    const int signal = host::NotedInterrupt();
    if (signal != 0) {
        complaint = "interrupted: what is not listed as written was not finished, and nothing of it was left";
    }
    const bool flushed = FlushOutput();
    if (!complaint.empty()) {
        Complain(complaint);
    }
    const std::vector<Fault> faults = FaultsBeside(complaint);
    project::PrintFaults(faults, std::cerr);
    for (const std::string& warning : project::TakeWarnings()) {
        std::cerr << "Warning: " + warning + ".\n";
    }
    if (signal != 0) {
        return kSignalExit + signal;
    }
    return succeeded && flushed && faults.empty() ? 0 : 1;
}

/// All words that may stand where one could not be understood: the subcommands, or the options of the one
/// that was chosen.
std::vector<std::string> KnownWords(const CLI::App& app) {
    std::vector<std::string> words;
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    if (chosen.empty()) {
        for (const CLI::App* subcommand : app.get_subcommands({})) {
            words.push_back(subcommand->get_name());
        }
        return words;
    }
    for (const CLI::Option* option : chosen.front()->get_options()) {
        for (const std::string& name : option->get_lnames()) {
            words.push_back("--" + name);
        }
    }
    return words;
}

/// Names the word that is no subcommand or no option, which the parser leaves over, and the right one.
std::string DescribeFailure(const CLI::App* app, const CLI::Error& failure) {
    const std::vector<std::string> words = app->remaining(true);
    const bool isTop = app->get_parent() == nullptr;
    const bool unknown = isTop && app->get_subcommands().empty() && !words.empty();
    const std::string reason = unknown ? "\"" + words.front() + "\" is no subcommand" : failure.what();
    const std::string meant =
        isTop && !words.empty() ? text::NearestWord(words.front(), KnownWords(*app)) : std::string();
    return "frozenlayer: " + reason + (meant.empty() ? "" : ", " + meant + " is one") +
           "; run it with --help to see what it takes\n";
}

/// "help" and "help SUBCOMMAND" stand for --help.
std::vector<const char*> WithoutHelpWord(int argc, const char* const* argv) {
    std::vector<const char*> words(argv, argv + argc);
    if (words.size() > 1 && std::string_view(words[1]) == "help") {
        words.erase(words.begin() + 1);
        words.push_back("--help");
    }
    return words;
}

}  // namespace

Option& Option::Type(const std::string& name) {
    option_->type_name(name);
    return *this;
}

Option& Option::Required() {
    option_->required();
    return *this;
}

Option& Option::ShowDefault() {
    option_->capture_default_str();
    return *this;
}

Option& Option::Check(std::function<std::string(const std::string&)> check) {
    option_->check(std::move(check));
    return *this;
}

Option& Option::OneOf(const std::vector<std::string>& words,
                      const std::map<std::string, std::string>& synonyms) {
    if (!synonyms.empty()) {
        option_->transform([synonyms](const std::string& word) {
            const auto found = synonyms.find(word);
            return found == synonyms.end() ? word : found->second;
        });
    }
    option_->check(CLI::IsMember(words));
    return *this;
}

Option& Option::Between(int lowest, int highest) {
    option_->check(CLI::Range(lowest, highest));
    return *this;
}

Option& Option::Between(double lowest, double highest, const std::string& limit) {
    const auto check = [lowest, highest](const std::string& text) {
        double number = 0.0;
        const bool fits = CLI::detail::lexical_cast(text, number) && number >= lowest && number <= highest;
        return fits ? std::string()
                    : text + " is no number from " + text::NumberText(lowest) + " to " +
                          text::NumberText(highest);
    };
    option_->check(CLI::Validator(check, limit));
    return *this;
}

Option& Option::CommaSeparated() {
    option_->delimiter(',')->allow_extra_args(false);
    return *this;
}

Option& Option::Needs(const std::string& other) {
    option_->needs(other);
    return *this;
}

Option& Option::Excludes(const std::string& other) {
    option_->excludes(other);
    return *this;
}

template <typename Value>
Option Subcommand::Add(const std::string& name, Value& target, const std::string& help) {
    return Option(*app_->add_option(name, target, help));
}

template Option Subcommand::Add(const std::string&, int&, const std::string&);
template Option Subcommand::Add(const std::string&, double&, const std::string&);
template Option Subcommand::Add(const std::string&, std::string&, const std::string&);
template Option Subcommand::Add(const std::string&, std::vector<int>&, const std::string&);
template Option Subcommand::Add(const std::string&, std::vector<double>&, const std::string&);
template Option Subcommand::Add(const std::string&, std::vector<std::string>&, const std::string&);
template Option Subcommand::Add(const std::string&, std::optional<double>&, const std::string&);

Option Subcommand::AddFlag(const std::string& names, bool& target, const std::string& help) {
    return Option(*app_->add_flag(names, target, help));
}

Program::Program()
    : app_(std::make_unique<CLI::App>(
          "the frozen layer of injection-moulded parts, from mesh and stage results\n"
          "Evaluates how far the frozen skin has grown into the wall of a part, from a project folder or "
          "from the files of another program, and shows the results.",
          "frozenlayer")) {
    app_->formatter(std::make_shared<text::ManualPage>());
    app_->set_version_flag("--version", "frozenlayer " QNL_VERSION, "Print the version");
    app_->set_help_flag("-h,--help", "Print this help");
    app_->require_subcommand(1);
    app_->failure_message(DescribeFailure);
    app_->footer(
        "EXAMPLE\n"
        "  frozenlayer run examples/ribbed-cover\n"
        "\n"
        "EXIT STATUS\n"
        "  0 success, 1 otherwise. frozenlayer SUBCOMMAND --help tells more about each.");
}

Program::~Program() = default;

Subcommand Program::AddSubcommand(const SubcommandTexts& texts, std::function<bool()> perform) {
    CLI::App& subcommand = *app_->add_subcommand(texts.name, texts.purpose + "\n" + texts.description);
    subcommand.footer("EXAMPLE\n  " + CLI::detail::join(texts.example, "\n  ") + "\n\n" + kExitCodes);
    subcommand.callback([this, perform = std::move(perform)] { chosen_ = perform; });
    return Subcommand(subcommand);
}

std::optional<int> Program::Choose(int argc, const char* const* argv) {
    try {
        const std::vector<const char*> words = WithoutHelpWord(argc, argv);
        app_->parse(static_cast<int>(words.size()), words.data());
    } catch (const CLI::ParseError& end) {
        const bool isHelp = app_->exit(end) == 0;
        return FlushOutput() && isHelp ? 0 : 1;
    }
    return std::nullopt;
}

int Program::Perform() {
    return PerformToItsEnd(chosen_);
}

}  // namespace qnl::commands
