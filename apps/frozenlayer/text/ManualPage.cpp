#include "text/ManualPage.h"

#include <array>
#include <sstream>
#include <string_view>

#include "text/TextTable.h"

namespace qnl::text {

namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kTextIndent = 2;
constexpr std::size_t kOptionIndent = 6;

/// The words of a text in indented lines.
std::string Wrapped(const std::string& text, std::size_t indent) {
    const std::string margin(indent, ' ');
    std::istringstream words(text);
    std::string lines;
    std::size_t used = 0;
    for (std::string word; words >> word;) {
        const std::size_t length = CharacterCount(word);
        const bool breaks = used == 0 || used + 1 + length > kWidth;
        lines += used == 0 ? "" : breaks ? "\n" : " ";
        lines += breaks ? margin : "";
        lines += word;
        used = breaks ? indent + length : used + 1 + length;
    }
    return lines + "\n";
}

std::string PurposeOf(const CLI::App& app) {
    const std::string text = app.get_description();
    return text.substr(0, text.find('\n'));
}

std::string TextOf(const CLI::App& app) {
    return app.get_description().substr(PurposeOf(app).size());
}

/// The name of the values, or the words to choose from.
std::string TypeOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t words = type.find(":{");
    if (words == std::string::npos) {
        return type.substr(0, type.find(':'));
    }
    return CLI::detail::find_and_replace(type.substr(words + 2, type.size() - words - 3), ",", "|");
}

/// What a check that describes itself asks for, as a sentence.
std::string LimitsOf(const CLI::Option& option) {
    struct Limit {
        std::string_view mark;
        const char* sentence;
    };
    constexpr std::array<Limit, 2> kLimits{
        {{":NONNEGATIVE", " At least 0."}, {":POSITIVE", " Larger than 0."}}};
    const std::string type = option.get_type_name();
    for (const Limit& limit : kLimits) {
        if (type.find(limit.mark) != std::string::npos) {
            return limit.sentence;
        }
    }
    const std::size_t open = type.find(" in [");
    return open == std::string::npos ? ""
                                     : " From " +
                                           CLI::detail::find_and_replace(
                                               type.substr(open + 5, type.size() - open - 6), " - ", " to ") +
                                           ".";
}

std::string ListOf(const std::string& title, const std::set<CLI::Option*>& options) {
    std::string names;
    for (const CLI::Option* option : options) {
        names += (names.empty() ? "" : ", ") + option->get_name();
    }
    return names.empty() ? "" : " " + title + " " + names + ".";
}

std::string ExplanationOf(const CLI::Option& option) {
    const std::string standard = option.get_default_str();
    return option.get_description() + "." + LimitsOf(option) +
           (standard.empty() ? "" : " Default: " + standard + ".") + ListOf("Needs", option.get_needs()) +
           ListOf("Not with", option.get_excludes());
}

bool IsRequiredOption(const CLI::Option* option) {
    return option->nonpositional() && option->get_required();
}

}  // namespace

std::string ManualPage::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    const std::string text = TextOf(*app);
    return "NAME\n" + Wrapped(name + " - " + PurposeOf(*app), kTextIndent) + "\nSYNOPSIS\n" +
           make_usage(app, name) + (text.empty() ? "" : "\nDESCRIPTION\n" + Wrapped(text, kTextIndent)) +
           make_positionals(app) + make_groups(app, mode) + make_subcommands(app, mode) + "\n" +
           make_footer(app);
}

std::string ManualPage::make_usage(const CLI::App* app, std::string name) const {
    std::string usage = "  " + name;
    for (const CLI::Option* option :
         app->get_options([](const CLI::Option* o) { return o->get_positional(); })) {
        usage += " " + make_option_usage(option);
    }
    for (const CLI::Option* option : app->get_options(IsRequiredOption)) {
        usage += " " + option->get_name() + " " + TypeOf(*option);
    }
    const bool hasSubcommands = !app->get_subcommands({}).empty();
    return usage + (hasSubcommands ? " SUBCOMMAND" : "") + " [OPTIONS]\n";
}

std::string ManualPage::make_group(std::string, bool isPositional,
                                   std::vector<const CLI::Option*> options) const {
    std::string text = isPositional ? "\nARGUMENTS\n" : "\nOPTIONS\n";
    for (const CLI::Option* option : options) {
        text += make_option(option, isPositional);
    }
    return text;
}

std::string ManualPage::make_option(const CLI::Option* option, bool isPositional) const {
    const std::string type = TypeOf(*option);
    const bool showsType = !isPositional && !type.empty();
    const bool repeats =
        option->get_expected_max() == CLI::detail::expected_max_vector_size && option->get_allow_extra_args();
    return "  " + CLI::detail::find_and_replace(make_option_name(option, isPositional), ",", ", ") +
           (showsType ? " " + type : "") + (repeats ? " ..." : "") + "\n" +
           Wrapped(ExplanationOf(*option), kOptionIndent);
}

std::string ManualPage::make_subcommands(const CLI::App* app, CLI::AppFormatMode) const {
    std::ostringstream list;
    for (const CLI::App* subcommand : app->get_subcommands({})) {
        CLI::detail::format_help(list, "  " + subcommand->get_name(), PurposeOf(*subcommand), 13);
    }
    return list.str().empty() ? "" : "\nSUBCOMMANDS\n" + list.str();
}

}  // namespace qnl::text
