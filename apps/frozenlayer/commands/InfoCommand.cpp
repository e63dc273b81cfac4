#include "commands/InfoCommand.h"

#include <array>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "imports/ForeignFacts.h"
#include "info/FactReaders.h"
#include "project/FaultReport.h"
#include "project/PathContent.h"
#include "project/ProjectPaths.h"

namespace qnl::commands {

namespace {

struct InfoRequest {
    std::string path;
    bool json = false;
};

/// Kind, what it is called, and who tells about it.
struct KindReader {
    project::PathContent kind;
    const char* name;
    info::FileFacts (*read)(const std::string& path);
};

constexpr std::array<KindReader, 7> kKindReaders{{
    {project::PathContent::Folder, "project folder", info::ReadProjectFacts},
    {project::PathContent::Mesh, "mesh", info::ReadMeshFacts},
    {project::PathContent::Result, "result", info::ReadResultFacts},
    {project::PathContent::AsciiResult, "ASCII stage result", info::ReadAsciiResultFacts},
    {project::PathContent::Search, "search file", info::ReadSearchFacts},
    {project::PathContent::RunFile, "run file", info::ReadRunFileFacts},
    {project::PathContent::Material, "material", info::ReadMaterialFacts},
}};

info::FileFacts ReadFacts(const std::string& path) {
    if (imports::IsForeignFile(path)) {
        info::FileFacts facts = imports::ReadForeignFacts(path);
        facts.path = project::NativePath(path);
        facts.kind = "mesh or results of another program";
        return facts;
    }
    const project::PathContent kind = project::RecognisePath(path);
    for (const KindReader& reader : kKindReaders) {
        if (reader.kind == kind) {
            info::FileFacts facts = reader.read(path);
            facts.path = project::NativePath(path);
            facts.kind = reader.name;
            return facts;
        }
    }
    throw project::InputProblem(
        project::NativePath(path) +
        ": neither a mesh, a result, a search file, a material, a run file nor a project folder of ours; "
        "frozenlayer import makes a project from a mesh with results of another program");
}

bool Inform(const InfoRequest& request) {
    info::FileFacts facts = ReadFacts(request.path);
    for (Fault& fault : TakeFaults()) {
        facts.faults.push_back(project::FaultSentence(fault));
        RecordFault(std::move(fault));
    }
    (request.json ? info::PrintJson : info::PrintText)(facts, std::cout);
    return true;
}

}  // namespace

void AddInfoCommand(Program& program) {
    auto request = std::make_shared<InfoRequest>();
    Subcommand command = program.AddSubcommand(
        {"info",
         "tell what a file or a project folder holds",
         "Tells the kind of a file by its content, and prints what stands in it: sizes, items "
         "with their ranges and units, times, names of other files. Files of other programs are told by "
         "their extension, and listed by the tables of import.",
         {"frozenlayer info examples/ribbed-cover/Mesh/cover.hdf"}},
        [request] { return Inform(*request); });
    command
        .Add("FILE", request->path,
             "Mesh, stage or frozen-layer result, thickness file, search file, material, run file, "
             "project folder, or a file that import reads")
        .Type("PATH")
        .Required();
    command.AddFlag("--json", request->json, "Print one JSON object, for machines");
}

}  // namespace qnl::commands
