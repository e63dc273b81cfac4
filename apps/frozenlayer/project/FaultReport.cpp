#include "project/FaultReport.h"

#include <algorithm>
#include <array>

#include "project/ProjectPaths.h"
#include "text/NumberText.h"

namespace qnl::project {

namespace {

/// How a text begins that says what stands there ("9 values"), not what went wrong ("it cannot be opened").
constexpr std::array<std::string_view, 8> kThings{"a ",         "an ", "another ", "more than ",
                                                  "less than ", "no ", "none",     "values "};

bool IsThing(std::string_view found) {
    const bool isNumberOrName =
        found.front() == '"' || found.front() == '-' || (found.front() >= '0' && found.front() <= '9');
    return isNumberOrName || std::any_of(kThings.begin(), kThings.end(), [&](std::string_view beginning) {
               return found.substr(0, beginning.size()) == beginning;
           });
}

/// What was found in place of what was expected; what went wrong speaks for itself.
std::string Finding(const Fault& fault) {
    if (fault.found.empty()) {
        return fault.expected + " expected";
    }
    const bool compares = !fault.expected.empty() && IsThing(fault.found);
    return compares ? fault.expected + " expected, " + fault.found + " found" : fault.found;
}

}  // namespace

std::string FaultSentence(const Fault& fault) {
    const std::string file = NativePath(fault.file);
    const bool namesFile = !file.empty() && fault.found.find(file + ": ") != std::string::npos;
    std::string sentence;
    for (const std::string& place : {file, fault.object}) {
        sentence += place.empty() || namesFile ? "" : place + ": ";
    }
    sentence += Finding(fault);
    if (!fault.remedy.empty()) {
        sentence += "; " + fault.remedy;
    }
    return sentence + ".";
}

void PrintFaults(const std::vector<Fault>& faults, std::ostream& out) {
    if (faults.empty()) {
        return;
    }
    std::vector<std::string> sentences;
    for (const Fault& fault : faults) {
        std::string sentence = FaultSentence(fault);
        if (std::find(sentences.begin(), sentences.end(), sentence) == sentences.end()) {
            sentences.push_back(std::move(sentence));
        }
    }
    std::string text = text::CountText(static_cast<long long>(sentences.size()), "fault") + ":\n";
    for (const std::string& sentence : sentences) {
        text += "  " + sentence + "\n";
    }
    out << text;
}

void RecordNodeIdMisuse(std::string_view resultFile, const StageSummary& summary) {
    if (summary.hasNodeIds) {
        RecordFault({std::string(resultFile), "node_ids", "values by node label without a map of node ids",
                     "a map, which is not looked at in this kind of file",
                     "write the values densely by node label, as only cool results are read with a map"});
    }
}

}  // namespace qnl::project
