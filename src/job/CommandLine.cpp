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
#include "layout/ProjectFolders.h"
#include "layout/RunFile.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Stages.h"

namespace qnl::job {

namespace {

constexpr int kRunFileMissing = 3302;

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
    const std::string folderMark = "\\" + std::string(layout::kRunFolderMark);
    const std::size_t mark = path.rfind(folderMark);
    if (mark == std::string::npos) {
        throw std::out_of_range("invalid string position: no \"" + folderMark + "\" in \"" + path + "\"");
    }
    const std::size_t runStart = mark + folderMark.size();
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
    const std::string result =
        layout::RunPath(words.directory, words.name, words.run, kFlowStage.resultExtension);
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

/// A mesh without an extension is refused later, when the path of its search file is built.
void TakeMesh(FrozenLayerJob& job, const std::string& path) {
    job.m_szMeshFile.Set(path);
    job.m_szMeshBase.Set(std::string_view(path).substr(0, path.rfind('.')));
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
    const layout::RunFileNames names = layout::ReadRunFileNames(*file);
    if (names.mesh) {
        TakeMesh(job, layout::MeshPath(projectDirectory, *names.mesh));
    }
    if (names.material) {
        job.m_szMaterialFile.Set(layout::MaterialPath(projectDirectory, *names.material));
    }
    return 1;
}

int BuildSearchResultPath(FrozenLayerJob& job) {
    job.m_szSurFile.Set(layout::SearchPath(job.m_szMeshFile.View()));
    return 1;
}

}  // namespace qnl::job
