#include "project/FaultReport.h"

#include <algorithm>

#include "project/OutputTime.h"
#include "project/ProjectPaths.h"
#include "text/NumberText.h"

namespace qnl::project {

std::string FaultSentence(const Fault& fault) {
    std::string sentence;
    for (const std::string& place : {NativePath(fault.file), fault.object}) {
        sentence += place.empty() ? "" : place + ": ";
    }
    if (!fault.expected.empty()) {
        sentence += fault.expected + " expected" + (fault.found.empty() ? "" : ", ");
    }
    if (!fault.found.empty()) {
        sentence += fault.found + (fault.expected.empty() ? "" : " found");
    }
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

void RecordNodeIdMisuse(std::string_view resultFile) {
    if (ReadStageSummary(resultFile).hasNodeIds) {
        RecordFault({std::string(resultFile), "node_ids", "values by node label without a map of node ids",
                     "a map, which is not looked at in this kind of file",
                     "write the values densely by node label, as only cool results are read with a map"});
    }
}

}  // namespace qnl::project
