#include "job/CommandLine.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <optional>
#include <stdexcept>

#include "base/Text.h"
#include "base/TokenReader.h"
#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Stages.h"

namespace qnl::job {

namespace {

constexpr std::size_t kLineBuffer = 255;
constexpr int kRunFileMissing = 3302;
constexpr std::string_view kRunFolderMark = "\\Analysis\\Run";

/// The launcher's words that the program uses.
struct ProjectWords {
    std::string directory;
    std::string name;
    std::string analysisCode;
    std::string run;
};

/// An integer as "%d" takes it; text that is none leaves `value` alone.
void ScanInteger(const std::string& text, int& value) {
    TokenReader(text).ReadInt(value);
}

void TakeIntermediateTimes(FrozenLayerJob& job, int argc, char** argv) {
    constexpr int kWordsWithCount = 5;
    if (argc == kWordsWithCount) {
        ScanInteger(argv[4], job.m_nIntermediateTimes);
    }
    job.m_nIntermediateTimes = job.m_options.intermediateTimes.value_or(job.m_nIntermediateTimes);
}

ProjectWords TakeLauncherWords(FrozenLayerJob& job, int argc, char** argv) {
    constexpr std::size_t kWordBuffer = 255;
    std::array<std::array<char, kWordBuffer>, 6> words{};
    job.m_pOptKer->argumentHandle(argc, argv, words[0].data(), words[1].data(), words[2].data(),
                                  words[3].data(), words[4].data(), words[5].data());
    return {words[1].data(), words[2].data(), words[3].data(), words[4].data()};
}

/// Splits "<directory>\Analysis\Run<run>\<name><run>.<extension>"; "/" counts as "\".
ProjectWords SplitInputFileName(std::string path) {
    for (char& character : path) {
        character = character == '/' ? '\\' : character;
    }
    const std::size_t mark = path.rfind(kRunFolderMark);
    if (mark == std::string::npos) {
        throw std::out_of_range("invalid string position: no \"" + std::string(kRunFolderMark) + "\" in \"" +
                                path + "\"");
    }
    const std::size_t runStart = mark + kRunFolderMark.size();
    const std::size_t runEnd = std::min(path.find('\\', runStart), path.size());
    ProjectWords words;
    words.directory = path.substr(0, mark);
    words.run = path.substr(runStart, runEnd - runStart);
    words.name = CutExtension(path.substr(path.rfind('\\') + 1));
    if (EndsWith(words.name, words.run)) {
        words.name.resize(words.name.size() - words.run.size());
    }
    return words;
}

ProjectWords TakeInputFileName(FrozenLayerJob& job, int argc, char** argv) {
    if (argc < 2) {
        throw std::invalid_argument("the full input file name is missing: it is the second word");
    }
    LogPlain(job, "InputFileName =%s\n", argv[1]);
    ProjectWords words = SplitInputFileName(argv[1]);
    job.m_nLogLevel = 0;
    return words;
}

void BuildProjectPaths(FrozenLayerJob& job, const ProjectWords& words) {
    job.m_szProjectName.Set(words.name);
    const std::string result = words.directory + std::string(kRunFolderMark) + words.run + "\\" + words.name +
                               words.run + std::string(kFlowStage.resultExtension);
    job.m_szResultFile.Set(result);
    job.m_szLogFile.Set(ReplaceExtension(result, ".lgz"));
    job.m_szCmxFile.Set(ReplaceExtension(result, ".cmx"));
    job.m_szRunFile.Set(ReplaceExtension(result, ".run"));
}

void CreateLogTool(FrozenLayerJob& job) {
    job.m_pLogTool = std::make_unique<CQNLKNLogErrMsgTool>();
    job.m_pLogTool->setData_Append(job.m_szLogFile.Text());
    job.m_pOptKer->getMsgPtr(job.m_pLogTool.get());
    job.m_pOptKer->m_nLogLevel = job.m_nLogLevel;
}

void CreateTimer(FrozenLayerJob& job, int argc, char** argv) {
    job.m_pCom = std::make_unique<CQNLCom>();
    int rank = 0;
    int processes = 0;
    job.m_pCom->Init(true, rank, processes, argc, argv, 0);
    job.m_dStartTime = job.m_pCom->Time();
}

/// A section of the run file: its header, the key of its count, and what to do with its first entry.
struct RunFileSection {
    std::string_view header;
    std::string_view countKey;
    void (*take)(FrozenLayerJob&, const std::string& directory, const std::string& value);
};

void TakeMesh(FrozenLayerJob& job, const std::string& directory, const std::string& value) {
    job.m_szMeshFile.Set(directory + "\\Mesh\\" + value);
    job.m_szMeshBase.Set(CutExtension(job.m_szMeshFile.View()));
}

void TakeMaterial(FrozenLayerJob& job, const std::string& directory, const std::string& value) {
    job.m_szMaterialFile.Set(directory + "\\Material\\" + value);
}

constexpr std::array<RunFileSection, 2> kRunFileSections{{
    {"[MESH]", "MeshCount", TakeMesh},
    {"[MATERIAL]", "MaterialCount", TakeMaterial},
}};

std::string LineValue(std::string_view line) {
    std::string value(line);
    ExtractLineValue(value);
    return value;
}

/// The cursor stands behind the count line: takes the first entry and passes over the others.
void ReadEntries(FrozenLayerJob& job, const RunFileSection& section, const std::string& directory, int count,
                 TokenReader& file) {
    std::string_view line;
    for (int k = 1; k == 1 || k <= count; ++k) {
        if (!file.ReadLine(kLineBuffer, line)) {
            return;
        }
        if (k == 1) {
            section.take(job, directory, LineValue(line));
        }
    }
}

void ReadSections(FrozenLayerJob& job, const std::string& directory, TokenReader& file) {
    std::string_view line;
    bool examine = file.ReadLine(kLineBuffer, line);
    while (examine) {
        const RunFileSection* found = nullptr;
        for (const RunFileSection& section : kRunFileSections) {
            if (found == nullptr && Holds(line, section.header)) {
                found = &section;
            }
        }
        examine = file.ReadLine(kLineBuffer, line);
        if (found != nullptr && examine && Holds(line, found->countKey)) {
            int count = 0;
            ScanInteger(LineValue(line), count);
            ReadEntries(job, *found, directory, count, file);
            examine = file.ReadLine(kLineBuffer, line);
        }
    }
}

}  // namespace

int HandleCommandLine(FrozenLayerJob& job, int argc, char** argv) {
    TakeIntermediateTimes(job, argc, argv);
    const bool wordsGiven = argc > 2 || job.m_nLogLevel <= 1;
    const ProjectWords words =
        wordsGiven ? TakeLauncherWords(job, argc, argv) : TakeInputFileName(job, argc, argv);
    ScanInteger(words.analysisCode, job.m_nAnalysisType);
    BuildProjectPaths(job, words);
    if (const int status = ReadRunFile(job, words.directory); status != 1) {
        return status;
    }
    BuildSearchResultPath(job);
    CreateLogTool(job);
    CreateTimer(job, argc, argv);
    return 1;
}

int ReadRunFile(FrozenLayerJob& job, std::string_view projectDirectory) {
    LogLine(job, job.m_szRunFile.Text());
    std::optional<TokenReader> file = OpenText(job.m_szRunFile.Text());
    if (!file) {
        CQNLKNLogErrMsgTool::printErrorMessageContent(kRunFileMissing, "*.run doesn't exist !\n", "",
                                                      std::cout);
        return kRunFileMissing;
    }
    ReadSections(job, std::string(projectDirectory), *file);
    return 1;
}

void ExtractLineValue(std::string& line) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) {
        const bool blank = equals + 1 < line.size() && line[equals + 1] == ' ';
        line.erase(0, equals + (blank ? 2 : 1));
    }
    line.resize(std::min(line.find('\n'), line.size()));
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
}

int BuildSearchResultPath(FrozenLayerJob& job) {
    job.m_szSurFile.Set(ReplaceExtension(job.m_szMeshFile.View(), ".sur"));
    return 1;
}

}  // namespace qnl::job
