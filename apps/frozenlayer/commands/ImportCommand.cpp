#include "commands/ImportCommand.h"

#include <iostream>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "imports/ImportReport.h"
#include "imports/ImportedCase.h"
#include "imports/ImportedProject.h"
#include "imports/TemperatureChecks.h"

namespace qnl::commands {

namespace {

constexpr double kSmallest = 1e-6;
constexpr double kLargest = 1e6;
constexpr double kAbsoluteZero = -273.15;

void AddArrayOptions(Subcommand& command, imports::ImportRequest& request) {
    for (const imports::QuantityRule& rule : imports::kQuantityRules) {
        std::string help = std::string("Array that holds the ") + rule.name + ", " + rule.unit;
        help += rule.quantity == imports::Quantity::Temperature ? " or as --temperature-unit says" : "";
        help += rule.quantity == imports::Quantity::Pressure
                    ? " or as --pressure-unit says, for density and volume shrinkage in place of --pressure"
                    : "";
        help += rule.quantity == imports::Quantity::Velocity ? " or as --velocity-unit says" : "";
        help += rule.quantity == imports::Quantity::Density
                    ? " or as --density-unit says, in place of the one that follows from the material"
                    : "";
        help +=
            rule.names[0].empty() ? "; not looked for by itself" : "; usual names are found by themselves";
        command.Add(rule.option, request.*rule.request, help).Type("ARRAY");
    }
}

void AddUnitOptions(Subcommand& command, imports::ImportRequest& request) {
    command
        .Add("--temperature-unit", request.temperatureUnit,
             "Unit of the temperatures; without it K for an OpenFOAM case, else degC")
        .OneOf({"K", "degC"}, {{"C", "degC"}, {"°C", "degC"}, {"celsius", "degC"}, {"kelvin", "K"}});
    command
        .Add("--velocity-unit", request.velocityUnit,
             "Unit of the velocities; without it m/s for an OpenFOAM case, else the length unit per second")
        .OneOf({"m/s", "cm/s", "mm/s"}, {{"metre-per-second", "m/s"},
                                         {"meter-per-second", "m/s"},
                                         {"metres-per-second", "m/s"},
                                         {"meters-per-second", "m/s"},
                                         {"centimetres-per-second", "cm/s"},
                                         {"centimeters-per-second", "cm/s"},
                                         {"millimetres-per-second", "mm/s"},
                                         {"millimeters-per-second", "mm/s"}});
    command
        .Add("--density-unit", request.densityUnit,
             "Unit of the array of --density; without it kg/m3 for an OpenFOAM case, else g/cm3")
        .OneOf({"kg/m3", "g/cm3"}, {{"kg/m³", "kg/m3"},
                                    {"kg/m^3", "kg/m3"},
                                    {"g/cm³", "g/cm3"},
                                    {"g/cm^3", "g/cm3"},
                                    {"g/cc", "g/cm3"}});
    command
        .Add("--pressure-unit", request.pressureUnit,
             "Unit of the array of --pressure-array; without it Pa for an OpenFOAM case, else MPa")
        .OneOf({"MPa", "Pa", "bar"});
    command
        .Add("--length-unit", request.lengthUnit,
             "Unit of the coordinates; without it m for an OpenFOAM case, else mm")
        .OneOf({"m", "mm", "cm", "in"}, {{"inch", "in"},
                                         {"inches", "in"},
                                         {"metre", "m"},
                                         {"meter", "m"},
                                         {"millimetre", "mm"},
                                         {"millimeter", "mm"},
                                         {"centimetre", "cm"},
                                         {"centimeter", "cm"}});
    command
        .Add("--times", request.times,
             "Times of the output times in s, T1,T2,..., in the order of the files; without it "
             "those that the files tell")
        .Type("T,...")
        .Between(-kLargest, kLargest, "")
        .CommaSeparated();
}

void AddMeshOptions(Subcommand& command, imports::ImportRequest& request) {
    for (auto& [option, names, help] :
         {std::tuple{"--part", &request.parts,
                     "Names of the regions, N1,N2,..., that are the part: blocks, zones, element blocks, "
                     "regions of an "
                     "OpenFOAM case; the others are left out"},
          std::tuple{"--ignore", &request.ignored, "Names of regions that are left out"}}) {
        command.Add(option, *names, help).Type("NAME,...").CommaSeparated();
    }
    command
        .Add("--region-array", request.regionArray,
             "Cell array with region numbers; every region is part unless --runner or --special "
             "names it. Without it an array \"Region\" of 0 part, 1 runner, 2 special is used")
        .Type("ARRAY");
    for (auto& [option, numbers, kind] :
         {std::tuple{"--runner", &request.runner, "the runner"},
          std::tuple{"--special", &request.special, "special cells: runner side, results cleared"}}) {
        command.Add(option, *numbers, std::string("Region numbers, N1,N2,..., of ") + kind)
            .Type("N,...")
            .CommaSeparated()
            .Needs("--region-array");
    }
    command
        .Add("--wall", request.wall,
             "Nominal wall, mm: sets the geometric tolerance to half of it; without it the part "
             "volume by its surface is taken")
        .Type("MM")
        .Between(kSmallest, kLargest, "POSITIVE");
}

void AddMaterialOptions(Subcommand& command, imports::ImportRequest& request) {
    command.Add("--material", request.material, "Material file").Type("FILE");
    command
        .Add("--freeze-temperature", request.freezeTemperature,
             "Freeze temperature, degC, instead of a material file")
        .Type("DEGC")
        .Between(kAbsoluteZero, kLargest, "")
        .Excludes("--material");
    command
        .Add("--pressure", request.pressure,
             "Pressure, MPa, at which density and volume shrinkage are computed from the "
             "material's Tait law when the files give none; shrinkage is against 25 degC and "
             "0.1 MPa")
        .Type("MPA")
        .Excludes("--pressure-array")
        .Between(0.0, kLargest, "NONNEGATIVE")
        .ShowDefault();
}

}  // namespace

void AddImportOptions(Subcommand& command, imports::ImportRequest& request) {
    command
        .Add("FILES", request.files,
             "One time series (.pvd, .case, .cgns, .exo, .foam), or files that are one output "
             "time each (.vtu, .vtk, .hdf); the last time becomes the base time")
        .Type("PATH")
        .Required();
    command.Add("--stage", request.stage, "Stage that the results belong to")
        .OneOf({"flow", "pack", "cool", "warp"})
        .ShowDefault();
    AddArrayOptions(command, request);
    AddUnitOptions(command, request);
    AddMeshOptions(command, request);
    AddMaterialOptions(command, request);
    command
        .Add("--allow-missing", request.allowMissing,
             "Share of the nodes, %, whose values may be no numbers; they are filled from their "
             "neighbours")
        .Type("PERCENT")
        .Between(0.0, 100.0, "FLOAT in [0 - 100]")
        .ShowDefault();
}

ImportOutcome ImportProject(imports::ImportRequest request) {
    imports::CheckProjectFolder(request.folder, request.force);
    const imports::ImportedMaterial material = imports::ChooseMaterial(request);
    const imports::ImportedCase imported = imports::ReadForeignCase(request);
    const imports::ImportedProject project = imports::WriteProject(request, imported, material);
    imports::PrintImport(request, imported, material, project, std::cout);
    ImportOutcome outcome{project.stageFile, imported.warnings};
    for (std::string& warning : imports::TemperatureWarnings(request, imported, material.freezeTemperature)) {
        outcome.warnings.push_back(std::move(warning));
    }
    return outcome;
}

void PrintWarnings(const ImportOutcome& outcome) {
    std::cout.flush();
    for (const std::string& warning : outcome.warnings) {
        std::cerr << "Warning: " + warning + ".\n";
    }
}

void AddImportCommand(Program& program) {
    auto request = std::make_shared<imports::ImportRequest>();
    Subcommand command = program.AddSubcommand(
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
            PrintWarnings(ImportProject(*request));
            return true;
        });
    AddImportOptions(command, *request);
    command.Add("--out", request->folder, "Project folder to make").Type("FOLDER").Required();
    command.AddFlag("--force", request->force, "Replace a project that stands there");
}

}  // namespace qnl::commands
