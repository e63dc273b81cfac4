#include "imports/ImportedCase.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/Interrupts.h"
#include "imports/ImportMeshData.h"
#include "imports/ImportStage.h"
#include "imports/ImportUnits.h"
#include "imports/RegionChoice.h"
#include "imports/TemperatureChecks.h"
#include "interop/JoinedBlocks.h"
#include "interop/NodeFields.h"
#include "text/NumberText.h"
#include "text/ShellWord.h"

namespace qnl::imports {

namespace {

bool SameMesh(const interop::ForeignMesh& a, const interop::ForeignMesh& b) {
    return a.cellTypes == b.cellTypes && a.offsets == b.offsets && a.nodes == b.nodes && a.points == b.points;
}

class CaseReader {
public:
    explicit CaseReader(ImportRequest& request) : request_(request), stage_(FindImportStage(request.stage)) {}

    ImportedCase Read() {
        const auto series = interop::OpenForeignSeries(request_.files);
        ChooseUnits(series->IsSi(), request_);
        if (!request_.times.empty() && static_cast<int>(request_.times.size()) != series->Count()) {
            throw interop::ForeignProblem("--times gives " + std::to_string(request_.times.size()) +
                                          ", but there are " + std::to_string(series->Count()) +
                                          " output times; give one for each");
        }
        for (int index = 0; index < series->Count(); ++index) {
            host::RaiseIfInterrupted();
            interop::ForeignSnapshot snapshot = series->Read(index);
            KeepChosenBlocks(request_, snapshot);
            interop::JoinBlocks(snapshot);
            AddSnapshot(snapshot, index);
        }
        SortTimes();
        WarnOfTimes();
        WarnOfWalls();
        WarnOfDensities();
        return std::move(case_);
    }

private:
    void AddSnapshot(const interop::ForeignSnapshot& snapshot, int index) {
        if (index == 0) {
            case_.solid = interop::BuildSolidMesh(snapshot.mesh, LengthUnit(request_), snapshot.file);
            AddMeshData(request_, snapshot, case_);
            ChooseArrays(snapshot);
            mesh_ = snapshot.mesh;
            firstFile_ = snapshot.file;
        } else if (!SameMesh(mesh_, snapshot.mesh)) {
            throw interop::ForeignProblem(
                snapshot.file + " has another mesh than " + firstFile_ +
                "; all output times must have the same points and cells in the same order");
        }
        ImportedTime time;
        time.file = snapshot.file;
        time.seconds = TimeOf(snapshot, index);
        for (const QuantityRule& rule : kQuantityRules) {
            const auto place = static_cast<std::size_t>(rule.quantity);
            if (case_.arrays[place].by != ChosenBy::Nothing) {
                time.values[place] = TakeValues(rule, snapshot);
            }
        }
        case_.times.push_back(std::move(time));
    }

    void ChooseArrays(const interop::ForeignSnapshot& snapshot) {
        for (const QuantityRule& rule : kQuantityRules) {
            if (stage_.Wants(rule.quantity)) {
                case_.arrays[static_cast<std::size_t>(rule.quantity)] = Choose(rule, snapshot);
            } else if (!(request_.*rule.request).empty()) {
                case_.warnings.push_back(std::string(rule.option) + " is not used: a " + request_.stage +
                                         " stage holds no " + rule.name);
            }
        }
        const QuantityRule& required = kQuantityRules[static_cast<std::size_t>(stage_.required)];
        if (case_.Chosen(stage_.required).by == ChosenBy::Nothing) {
            throw interop::ForeignProblem(snapshot.file + ": no array has a usual name of a " +
                                          required.name + "; name it with " + required.option + " (" +
                                          ListArrays(snapshot, required.name) + ")");
        }
    }

    /// An array that is taken for its name alone is left out, with a warning, when the file tells that it is
    /// something else; so is one that looks like the density, which is taken when an option names it.
    ChosenArray Choose(const QuantityRule& rule, const interop::ForeignSnapshot& snapshot) {
        ChosenArray chosen = ChooseArray(rule, request_, snapshot);
        if (chosen.by == ChosenBy::Name && rule.quantity != stage_.required) {
            const std::string problem =
                ProblemOfDimensions(rule, *FindArray(snapshot, chosen.name), snapshot.file);
            if (!problem.empty()) {
                case_.warnings.push_back("\"" + chosen.name + "\" is left out: " + problem);
                return {};
            }
        }
        if (rule.quantity == Quantity::Density && chosen.by == ChosenBy::Nothing) {
            for (const std::string& name : NamesOfDensities(snapshot)) {
                case_.warnings.push_back("\"" + name +
                                         "\" is left out, as the density follows from the material: "
                                         "--density " +
                                         text::ShellWord(name) + " takes it");
            }
        }
        return chosen;
    }

    double TimeOf(const interop::ForeignSnapshot& snapshot, int index) {
        if (!request_.times.empty()) {
            return request_.times[static_cast<std::size_t>(index)];
        }
        if (snapshot.seconds && !std::isfinite(*snapshot.seconds)) {
            throw interop::ForeignProblem(
                snapshot.file + " tells a time that is no finite number; give the times with --times");
        }
        timesKnown_ += snapshot.seconds ? 1 : 0;
        return snapshot.seconds.value_or(index);
    }

    NodeComponents TakeValues(const QuantityRule& rule, const interop::ForeignSnapshot& snapshot) {
        const ChosenArray& chosen = case_.Chosen(rule.quantity);
        const interop::ForeignArray* array = FindArray(snapshot, chosen.name);
        if (array == nullptr || array->components != rule.components || array->onCells != chosen.onCells) {
            throw interop::ForeignProblem(snapshot.file + " holds no array \"" + chosen.name + "\" as " +
                                          firstFile_ + " does; every output time must have it (" +
                                          ListArrays(snapshot, chosen.name) + ")");
        }
        const std::string problem = ProblemOfDimensions(rule, *array, snapshot.file);
        if (!problem.empty()) {
            throw interop::ForeignProblem(problem);
        }
        const Conversion conversion = ConversionOf(rule.quantity, request_);
        NodeComponents components;
        for (int component = 0; component < rule.components; ++component) {
            std::vector<double> values =
                interop::NodeValues(*array, component, case_.solid, snapshot.boundary);
            FillGaps(values, *array, snapshot.file);
            std::vector<float> converted;
            converted.reserve(values.size());
            for (const double value : values) {
                converted.push_back(static_cast<float>(conversion.factor * value + conversion.offset));
            }
            components.push_back(std::move(converted));
        }
        if (rule.quantity == Quantity::Temperature) {
            CheckTemperatures(components.front(), array->name, snapshot.file);
        }
        return components;
    }

    void FillGaps(std::vector<double>& values, const interop::ForeignArray& array, const std::string& file) {
        const auto missing =
            std::count_if(values.begin(), values.end(), [](double value) { return !std::isfinite(value); });
        if (missing == 0) {
            return;
        }
        const double share = 100.0 * static_cast<double>(missing) / static_cast<double>(values.size());
        const std::string count = file + ": " + text::CountText(missing, "value") + " of \"" + array.name +
                                  "\" (" + text::NumberText(share) + " % of the nodes)";
        if (share > request_.allowMissing || interop::FillMissing(values, case_.solid) > 0) {
            throw interop::ForeignProblem(
                count + " not a number, and at most " + text::NumberText(request_.allowMissing) +
                " % are filled from their neighbours; repair the results or raise --allow-missing");
        }
        case_.warnings.push_back(count + " not a number: filled from their neighbours");
    }

    void SortTimes() {
        std::stable_sort(case_.times.begin(), case_.times.end(),
                         [](const ImportedTime& a, const ImportedTime& b) { return a.seconds < b.seconds; });
        for (std::size_t i = 1; i < case_.times.size(); ++i) {
            if (!(case_.times[i - 1].seconds < case_.times[i].seconds)) {
                throw interop::ForeignProblem(
                    case_.times[i - 1].file + " and " + case_.times[i].file + " have the same time, " +
                    text::NumberText(case_.times[i].seconds) + " s; give the times with --times");
            }
        }
    }

    void WarnOfTimes() {
        const auto count = static_cast<int>(case_.times.size());
        if (!request_.times.empty() || timesKnown_ == count) {
            return;
        }
        if (timesKnown_ > 0) {
            throw interop::ForeignProblem("only " + std::to_string(timesKnown_) + " of " +
                                          std::to_string(count) +
                                          " files tell their time; give all times with --times");
        }
        case_.warnings.push_back(
            count == 1 ? "the file does not tell its time: 0 s is taken; --times gives it"
                       : "the files do not tell their times: 0, 1, 2, ... s are taken in the order "
                         "given; --times gives them");
    }

    void WarnOfWalls() {
        const ChosenArray& chosen = case_.Chosen(Quantity::Temperature);
        if (chosen.onCells && !chosen.onBoundary) {
            case_.warnings.push_back(
                "\"" + chosen.name +
                "\" has values of cells and none at the walls: those of surface nodes are "
                "carried there from the cells around them; export values of points, or the "
                "boundary with its own values, if a mould holds the walls colder");
        }
    }

    void WarnOfDensities() {
        const auto [low, high] = QuantityRange(case_, Quantity::Density);
        if (low <= high) {
            const std::string doubt =
                DoubtOfDensity(request_, static_cast<double>(low), static_cast<double>(high));
            if (!doubt.empty()) {
                case_.warnings.push_back(doubt);
            }
        }
    }

    ImportRequest& request_;
    const ImportStage& stage_;
    ImportedCase case_;
    interop::ForeignMesh mesh_;
    std::string firstFile_;
    int timesKnown_ = 0;
};

}  // namespace

ImportedCase ReadForeignCase(ImportRequest& request) {
    return CaseReader(request).Read();
}

std::array<float, 2> QuantityRange(const ImportedCase& imported, Quantity quantity) {
    std::array<float, 2> range{std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest()};
    for (const ImportedTime& time : imported.times) {
        for (const std::vector<float>& values : time.values[static_cast<std::size_t>(quantity)]) {
            const auto [low, high] = std::minmax_element(values.begin(), values.end());
            range = {std::min(range[0], *low), std::max(range[1], *high)};
        }
    }
    return range;
}

}  // namespace qnl::imports
