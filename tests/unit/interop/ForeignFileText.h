#pragma once

#include <string>
#include <vector>

#include "interop/ForeignSeries.h"
#include "support/ScratchFolder.h"

/// Texts as files of another program.
struct ForeignFileText {
    std::string Write(const std::string& name, const std::string& text) const {
        return folder.Write(name, text);
    }
    qnl::interop::ForeignSnapshot ReadFirst(const std::string& name, const std::string& text) const {
        return qnl::interop::OpenForeignSeries({Write(name, text)})->Read(0);
    }
    /// The sentence with which a file is refused, without its folder; empty when it is taken.
    std::string Refusal(const std::string& name, const std::string& text) const {
        const std::string file = Write(name, text);
        try {
            qnl::interop::OpenForeignSeries({file})->Read(0);
            return {};
        } catch (const qnl::interop::ForeignProblem& problem) {
            const std::string sentence = problem.what();
            return sentence.substr(sentence.find(name));
        }
    }

    ScratchFolder folder;
};

/// The array of this name; one without values when there is none.
inline qnl::interop::ForeignArray ArrayOf(const qnl::interop::ForeignSnapshot& snapshot,
                                          const std::string& name) {
    for (const qnl::interop::ForeignArray& array : snapshot.arrays) {
        if (array.name == name) {
            return array;
        }
    }
    return {};
}

/// `text` with its first `from` replaced.
inline std::string With(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}
