#include "ImportCommand.h"

#include <iostream>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "ImportReport.h"
#include "ImportedCase.h"
#include "ImportedProject.h"
#include "NumberText.h"
#include "Subcommand.h"

namespace qnl {

namespace {

/// Any range takes what is not a number; this one does not. `limit` describes it in the help.
CLI::Validator FiniteFrom(double lowest, double highest, const std::string& limit) {
    return {[lowest, highest](const std::string& text) {
                double number = 0.0;
                const bool fits =
                    CLI::detail::lexical_cast(text, number) && number >= lowest && number <= highest;
                return fits
                           ? std::string()
                           : text + " is no number from " + NumberText(lowest) + " to " + NumberText(highest);
            },
            limit};
}

constexpr double kSmallest = 1e-6;
constexpr double kLargest = 1e6;
constexpr double kAbsoluteZero = -273.15;

void AddArrayOptions(CLI::App& command, ImportRequest& request) {
    for (const QuantityRule& rule : kQuantityRules) {
        std::string help = std::string("Array that holds the ") + rule.name + ", " + rule.unit;
        help += rule.quantity == Quantity::Temperature ? " or as --temperature-unit says" : "";
        help += rule.quantity == Quantity::Pressure
                    ? " or as --pressure-unit says, for density and volume shrinkage in place of --pressure"
                    : "";
        help += rule.quantity == Quantity::Velocity ? " after conversion from length units per second" : "";
        help +=
            rule.names[0].empty() ? "; not looked for by itself" : "; usual names are found by themselves";
        command.add_option(rule.option, request.*rule.request, help)->type_name("ARRAY");
    }
}

void AddUnitOptions(CLI::App& command, ImportRequest& request) {
    command.add_option("--temperature-unit", request.temperatureUnit, "Unit of the temperatures")
        ->check(CLI::IsMember(std::vector<std::string>{"K", "degC"}))
        ->capture_default_str();
    command.add_option("--pressure-unit", request.pressureUnit, "Unit of the array of --pressure-array")
        ->check(CLI::IsMember(std::vector<std::string>{"MPa", "Pa", "bar"}))
        ->capture_default_str();
    command.add_option("--length-unit", request.lengthUnit, "Unit of the coordinates")
        ->check(CLI::IsMember(std::vector<std::string>{"m", "mm", "cm", "in"}))
        ->capture_default_str();
    command
        .add_option("--times", request.times,
                    "Times of the output times in s, T1,T2,..., in the order of the files; without it "
                    "those that the files tell")
        ->type_name("T,...")
        ->check(FiniteFrom(-kLargest, kLargest, ""))
        ->delimiter(',')
        ->allow_extra_args(false);
}

void AddMeshOptions(CLI::App& command, ImportRequest& request) {
    command
        .add_option("--region-array", request.regionArray,
                    "Cell array with region numbers; every region is part unless --runner or --special "
                    "names it. Without it an array \"Region\" of 0 part, 1 runner, 2 special is used")
        ->type_name("ARRAY");
    for (auto& [option, numbers, kind] :
         {std::tuple{"--runner", &request.runner, "the runner"},
          std::tuple{"--special", &request.special, "special cells: runner side, results cleared"}}) {
        command.add_option(option, *numbers, std::string("Region numbers, N1,N2,..., of ") + kind)
            ->type_name("N,...")
            ->delimiter(',')
            ->allow_extra_args(false)
            ->needs("--region-array");
    }
    command
        .add_option("--wall", request.wall,
                    "Nominal wall, mm: sets the geometric tolerance to half of it; without it the part "
                    "volume by its surface is taken")
        ->type_name("MM")
        ->check(FiniteFrom(kSmallest, kLargest, "POSITIVE"));
}

void AddMaterialOptions(CLI::App& command, ImportRequest& request) {
    auto* material = command.add_option("--material", request.material, "Material file");
    material->type_name("FILE");
    command
        .add_option("--freeze-temperature", request.freezeTemperature,
                    "Freeze temperature, degC, instead of a material file")
        ->type_name("DEGC")
        ->check(FiniteFrom(kAbsoluteZero, kLargest, ""))
        ->excludes(material);
    command
        .add_option("--pressure", request.pressure,
                    "Pressure, MPa, at which density and volume shrinkage are computed from the "
                    "material's Tait law when the files give none; shrinkage is against 25 degC and "
                    "0.1 MPa")
        ->type_name("MPA")
        ->excludes("--pressure-array")
        ->check(FiniteFrom(0.0, kLargest, "NONNEGATIVE"))
        ->capture_default_str();
}

}  // namespace

void AddImportOptions(CLI::App& command, ImportRequest& request) {
    command
        .add_option("FILES", request.files,
                    "One time series (.pvd, .case, .cgns, .exo, .foam), or files that are one output "
                    "time each (.vtu, .vtk, .hdf); the last time becomes the base time")
        ->type_name("PATH")
        ->required();
    command.add_option("--stage", request.stage, "Stage that the results belong to")
        ->check(CLI::IsMember(std::vector<std::string>{"flow", "pack", "cool", "warp"}))
        ->capture_default_str();
    AddArrayOptions(command, request);
    AddUnitOptions(command, request);
    AddMeshOptions(command, request);
    AddMaterialOptions(command, request);
    command
        .add_option("--allow-missing", request.allowMissing,
                    "Share of the nodes, %, whose values may be no numbers; they are filled from their "
                    "neighbours")
        ->type_name("PERCENT")
        ->check(FiniteFrom(0.0, 100.0, "FLOAT in [0 - 100]"))
        ->capture_default_str();
}

std::string ImportProject(const ImportRequest& request) {
    CheckProjectFolder(request.folder, request.force);
    const ImportedMaterial material = ChooseMaterial(request);
    const ImportedCase imported = ReadForeignCase(request);
    const ImportedProject project = WriteProject(request, imported, material);
    PrintImport(request, imported, material, project, std::cout);
    std::cout.flush();
    for (const std::string& warning : imported.warnings) {
        std::cerr << "Warning: " + warning + ".\n";
    }
    return project.stageFile;
}

void AddImportCommand(CLI::App& app, int& exitCode) {
    auto request = std::make_shared<ImportRequest>();
    CLI::App& command =
        AddSubcommand(app, exitCode,
                      {"import",
                       "make a project from a mesh with results of another program",
                       "Reads a mesh with temperatures (or displacements) in a format of another program, "
                       "and makes a complete project folder: mesh, material, run file, stage results. Prints "
                       "what it found: cells, regions, the arrays chosen with their ranges, output times. "
                       "docs/import.md tells more about formats and arrays.",
                       {"frozenlayer import examples/stepped-plate-vtu/b.pvd --out plate --material "
                        "examples/stepped-plate/Material/pp.toml",
                        "frozenlayer run plate"}},
                      [request] {
                          ImportProject(*request);
                          return std::cout.good() ? 0 : 1;
                      });
    AddImportOptions(command, *request);
    command.add_option("--out", request->folder, "Project folder to make")->type_name("FOLDER")->required();
    command.add_flag("--force", request->force, "Replace a project that stands there");
}

}  // namespace qnl
