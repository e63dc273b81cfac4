#include <cstdio>

#include "LauncherWords.h"
#include "job/EntryRoutine.h"
#include "platform/HostThreads.h"

namespace {

constexpr int kUsageError = 2;

constexpr const char* kUsage =
    "QNL3DFrozenLayer " QNL_VERSION
    ": frozen layer of an injection-moulded part at every output time of an analysis\n"
    "\n"
    "Usage:\n"
    "  QNL3DFrozenLayer RESULT PROJECT_DIR PROJECT_NAME ANALYSIS_CODE RUN [X] [options]\n"
    "  QNL3DFrozenLayer RESULT INPUT_FILE --log-level=N [options]     N of 2 or more\n"
    "\n"
    "RESULT is the stage result file: .k4f flow, .k4p pack, .k4c cool, .k4hc heating-cooling, .k4w warp,\n"
    "with --fibre-probe .k4o fibre.\n"
    "With exactly five words RUN is also the count of intermediate output times; with a sixth word X, which\n"
    "is not looked at, the count comes from the option only.\n"
    "\n"
    "With two words at log level 2 or more, the full name of the input file tells the project:\n"
    "PROJECT_DIR/Analysis/Run<run>/<name><run>.<extension>. The analysis code is then 0, and the run goes "
    "on\n"
    "at log level 0.\n"
    "\n"
    "Options:\n"
    "  --intermediate-times=N  evaluate RESULT_001 to RESULT_N after the base time\n"
    "  --log-level=N           0 silent (default), 1 progress and report, 2 diagnostics\n"
    "  --threads=N             threads, 1 to 4096 (default: the OpenMP runtime's own)\n"
    "  --corrected             evaluate each output time on its own (see docs/modes.md)\n"
    "  --resolved              so, and see the wall by the field along the normal, not by cell averages\n"
    "  --fibre-probe           print the fibre orientation of a .k4o result at listed or typed nodes "
    "instead\n"
    "  --help, --version\n"
    "\n"
    "Exit codes: 1 normal end, -1000 material, -2000 mesh, -5000 exception (a POSIX shell shows 24, 48, "
    "120),\n"
    "2 wrong usage.\n"
    "\n"
    "Example:\n"
    "  QNL3DFrozenLayer examples/ribbed-cover/Analysis/Run1/cover1.k4f examples/ribbed-cover cover 4 1 x \\\n"
    "      --intermediate-times=7 --log-level=1\n";

}  // namespace

int main(int argc, char** argv) {
    qnl::launcher::LauncherWords parsed = qnl::launcher::ParseLauncherWords(argc, argv);
    if (!parsed.usageError.empty()) {
        std::fprintf(stderr, "QNL3DFrozenLayer: %s; see QNL3DFrozenLayer --help\n",
                     parsed.usageError.c_str());
        return kUsageError;
    }
    if (parsed.help || parsed.version) {
        std::fputs(parsed.help ? kUsage : "QNL3DFrozenLayer " QNL_VERSION "\n", stdout);
        return 0;
    }
    qnl::LetIdleThreadsSleep(argv);
    std::vector<char*> words;
    for (std::string& word : parsed.words) {
        words.push_back(word.data());
    }
    const int count = static_cast<int>(words.size());
    words.push_back(nullptr);
    return qnl::job::RunFrozenLayer(count, words.data(), parsed.options);
}
