#include "LauncherWords.h"

#include <array>
#include <charconv>
#include <string_view>

#include "platform/Stages.h"

namespace qnl::launcher {

namespace {

bool ParseInteger(std::string_view text, int& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

/// One option: takes the text after "=" (empty when there is none) and gives false when it does not fit.
struct Option {
    std::string_view name;
    std::string_view expected;  ///< what stands after "="; empty for an option without a value
    bool (*apply)(LauncherWords&, std::string_view);
};

bool SetLogLevel(LauncherWords& parsed, std::string_view value) {
    return ParseInteger(value, parsed.options.logLevel) && parsed.options.logLevel >= 0;
}

bool SetThreads(LauncherWords& parsed, std::string_view value) {
    return ParseInteger(value, parsed.options.threads) && parsed.options.threads >= 1 &&
           parsed.options.threads <= kMostThreads;
}

bool SetIntermediateTimes(LauncherWords& parsed, std::string_view value) {
    int times = 0;
    if (!ParseInteger(value, times) || times < 0) {
        return false;
    }
    parsed.options.intermediateTimes = times;
    return true;
}

template <Mode kMode>
bool SetMode(LauncherWords& parsed, std::string_view /*value*/) {
    parsed.options.mode = kMode;
    return true;
}

constexpr std::string_view kCount = "a whole number of at least 0";
constexpr std::string_view kThreads = "a whole number from 1 to 4096";
static_assert(kMostThreads == 4096, "the text of the limit follows it");

constexpr std::array<Option, 9> kOptions{{
    {"--log-level", kCount, SetLogLevel},
    {"--threads", kThreads, SetThreads},
    {"--intermediate-times", kCount, SetIntermediateTimes},
    {"--fibre-probe", "", [](LauncherWords& p, std::string_view) { return p.options.fibreProbe = true; }},
    {"--fiber-probe", "", [](LauncherWords& p, std::string_view) { return p.options.fibreProbe = true; }},
    {"--corrected", "", SetMode<Mode::Corrected>},
    {"--resolved", "", SetMode<Mode::Resolved>},
    {"--help", "", [](LauncherWords& p, std::string_view) { return p.help = true; }},
    {"--version", "", [](LauncherWords& p, std::string_view) { return p.version = true; }},
}};

std::string UsageErrorOf(const Option& option, std::string_view argument) {
    const std::string expected =
        option.expected.empty()
            ? "it takes no value"
            : std::string(option.expected) + " is expected after \"" + std::string(option.name) + "=\"";
    return "option \"" + std::string(argument) + "\": " + expected;
}

void ApplyOption(LauncherWords& parsed, std::string_view argument) {
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    const bool hasValue = equals != std::string_view::npos;
    for (const Option& option : kOptions) {
        if (option.name != name) {
            continue;
        }
        const std::string_view value = hasValue ? argument.substr(equals + 1) : std::string_view();
        if (option.expected.empty() == hasValue || !option.apply(parsed, value)) {
            parsed.usageError = UsageErrorOf(option, argument);
        }
        return;
    }
    parsed.usageError = "unknown option \"" + std::string(argument) + "\"";
}

bool IsOption(std::string_view argument) {
    return argument.substr(0, 2) == "--";
}

void CheckWordCount(LauncherWords& parsed) {
    if (parsed.words.empty()) {
        parsed.usageError = "no stage result file is named";
    } else if (parsed.words.size() == 1 && parsed.options.logLevel >= 2) {
        parsed.usageError =
            "at log level 2 or more a single word is not enough: name the full input file as"
            " the second word, or give the project words";
    }
}

}  // namespace

LauncherWords ParseLauncherWords(int argc, const char* const* argv) {
    LauncherWords parsed;
    for (int i = 0; i < argc; ++i) {
        if (i > 0 && IsOption(argv[i])) {
            if (parsed.usageError.empty()) {
                ApplyOption(parsed, argv[i]);
            }
        } else if (i > 0 || NamesStageResult(argv[i])) {
            parsed.words.emplace_back(argv[i]);
        }
    }
    if (parsed.usageError.empty() && !parsed.help && !parsed.version) {
        CheckWordCount(parsed);
    }
    return parsed;
}

}  // namespace qnl::launcher
