#include "InfoCommand.h"

#include <array>
#include <iostream>
#include <memory>
#include <string>

#include "FactReaders.h"
#include "FaultReport.h"
#include "FileKind.h"
#include "ProjectPaths.h"

namespace qnl {

namespace {

struct InfoRequest {
    std::string path;
    bool json = false;
};

/// Kind, what it is called, and who tells about it.
struct KindReader {
    FileKind kind;
    const char* name;
    FileFacts (*read)(const std::string& path);
};

constexpr std::array<KindReader, 7> kKindReaders{{
    {FileKind::Folder, "project folder", ReadProjectFacts},
    {FileKind::Mesh, "mesh", ReadMeshFacts},
    {FileKind::Result, "result", ReadResultFacts},
    {FileKind::AsciiResult, "ASCII stage result", ReadAsciiResultFacts},
    {FileKind::Search, "search file", ReadSearchFacts},
    {FileKind::RunFile, "run file", ReadRunFileFacts},
    {FileKind::Material, "material", ReadMaterialFacts},
}};

FileFacts ReadFacts(const std::string& path) {
    const FileKind kind = RecogniseFile(path);
    for (const KindReader& reader : kKindReaders) {
        if (reader.kind == kind) {
            FileFacts facts = reader.read(path);
            facts.path = NativePath(path);
            facts.kind = reader.name;
            return facts;
        }
    }
    throw InputProblem(
        NativePath(path) +
        ": neither a mesh, a result, a search file, a material, a run file nor a project folder of ours; "
        "frozenlayer import makes a project from a mesh with results of another program");
}

int Inform(const InfoRequest& request) {
    FileFacts facts = ReadFacts(request.path);
    const std::vector<Fault> faults = TakeFaults();
    for (const Fault& fault : faults) {
        facts.faults.push_back(FaultSentence(fault));
    }
    (request.json ? PrintJson : PrintText)(facts, std::cout);
    std::cout.flush();
    PrintFaults(faults, std::cerr);
    return faults.empty() ? 0 : 1;
}

}  // namespace

void AddInfoCommand(Program& program) {
    auto request = std::make_shared<InfoRequest>();
    Subcommand command = program.AddSubcommand(
        {"info",
         "tell what a file or a project folder holds",
         "Tells the kind of a file by its content, and prints what stands in it: sizes, items "
         "with their ranges and units, times, names of other files.",
         {"frozenlayer info examples/ribbed-cover/Mesh/cover.hdf"}},
        [request] { return Inform(*request); });
    command
        .Add("FILE", request->path,
             "Mesh, stage or frozen-layer result, thickness file, search file, material, run file or "
             "project folder")
        .Type("PATH")
        .Required();
    command.AddFlag("--json", request->json, "Print one JSON object, for machines");
}

}  // namespace qnl
