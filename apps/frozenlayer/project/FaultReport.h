#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Faults.h"
#include "project/OutputTime.h"

namespace qnl::project {

/// One sentence: file, object, what was expected, what was found, what to do.
std::string FaultSentence(const Fault& fault);

/// Prints a heading and one sentence per fault, equal ones once; nothing for an empty list.
void PrintFaults(const std::vector<Fault>& faults, std::ostream& out);

/// Records a fault when a result that is read densely by node label carries a map of node ids.
void RecordNodeIdMisuse(std::string_view resultFile, const StageSummary& summary);

}  // namespace qnl::project
