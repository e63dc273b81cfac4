#include "imports/ImportArrays.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "text/NearestWord.h"

namespace qnl::imports {

namespace {

std::string WithoutPunctuation(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return plain;
}

std::string ComponentText(int components) {
    return components == 1 ? "1 component" : std::to_string(components) + " components";
}

ChosenArray TakeNamed(const QuantityRule& rule, const std::string& name,
                      const interop::ForeignSnapshot& snapshot) {
    const interop::ForeignArray* array = FindArray(snapshot, name);
    if (array == nullptr) {
        throw interop::ForeignProblem(snapshot.file + " holds no array \"" + name + "\"; " +
                                      ListArrays(snapshot, name));
    }
    if (array->components != rule.components) {
        throw interop::ForeignProblem(snapshot.file + ": array \"" + name + "\" has " +
                                      ComponentText(array->components) + ", but a " + rule.name + " has " +
                                      std::to_string(rule.components) + "; " + ListArrays(snapshot, name));
    }
    return {ChosenBy::Option, name, array->onCells};
}

}  // namespace

std::vector<std::string> NamesOfDensities(const interop::ForeignSnapshot& snapshot) {
    constexpr std::array<std::string_view, 3> kUsual{"rho", "density", "dens"};
    std::vector<std::string> names;
    for (const interop::ForeignArray& array : snapshot.arrays) {
        const bool isUsual =
            std::find(kUsual.begin(), kUsual.end(), WithoutPunctuation(array.name)) != kUsual.end();
        if (isUsual && array.components == 1 &&
            std::find(names.begin(), names.end(), array.name) == names.end()) {
            names.push_back(array.name);
        }
    }
    return names;
}

const interop::ForeignArray* FindArray(const interop::ForeignSnapshot& snapshot, const std::string& name) {
    const interop::ForeignArray* found = nullptr;
    for (const interop::ForeignArray& array : snapshot.arrays) {
        if (array.name == name && (found == nullptr || (found->onCells && !array.onCells))) {
            found = &array;
        }
    }
    return found;
}

const interop::ForeignArray* FindCellArray(const interop::ForeignSnapshot& snapshot,
                                           const std::string& name) {
    for (const interop::ForeignArray& array : snapshot.arrays) {
        if (array.onCells && array.components == 1 && array.name == name) {
            return &array;
        }
    }
    return nullptr;
}

std::string ListArrays(const interop::ForeignSnapshot& snapshot, const std::string& wanted) {
    std::vector<const interop::ForeignArray*> arrays;
    for (const interop::ForeignArray& array : snapshot.arrays) {
        arrays.push_back(&array);
    }
    const auto distance = [&](const interop::ForeignArray* array) {
        return text::EditDistance(WithoutPunctuation(array->name), WithoutPunctuation(wanted));
    };
    std::stable_sort(arrays.begin(), arrays.end(),
                     [&](const interop::ForeignArray* a, const interop::ForeignArray* b) {
                         return distance(a) < distance(b);
                     });
    std::string text = arrays.empty() ? "the file holds no array at all" : "choose one that is there: ";
    for (const interop::ForeignArray* array : arrays) {
        text += (array == arrays.front() ? "" : ", ") + array->name + " (" +
                ComponentText(array->components) + (array->onCells ? ", cells)" : ", points)");
    }
    return text;
}

namespace {

bool IsOnBoundary(const interop::ForeignSnapshot& snapshot, const std::string& name) {
    return std::any_of(
        snapshot.boundary.begin(), snapshot.boundary.end(), [&](const interop::ForeignFaces& faces) {
            return std::any_of(faces.arrays.begin(), faces.arrays.end(),
                               [&](const interop::ForeignArray& array) { return array.name == name; });
        });
}

ChosenArray ChooseByName(const QuantityRule& rule, const ImportRequest& request,
                         const interop::ForeignSnapshot& snapshot) {
    const std::string& named = request.*rule.request;
    if (!named.empty()) {
        return TakeNamed(rule, named, snapshot);
    }
    for (const std::string_view name : rule.names) {
        for (const interop::ForeignArray& array : snapshot.arrays) {
            if (!name.empty() && WithoutPunctuation(array.name) == name &&
                array.components == rule.components) {
                return {ChosenBy::Name, array.name, FindArray(snapshot, array.name)->onCells};
            }
        }
    }
    return {};
}

}  // namespace

ChosenArray ChooseArray(const QuantityRule& rule, const ImportRequest& request,
                        const interop::ForeignSnapshot& snapshot) {
    ChosenArray chosen = ChooseByName(rule, request, snapshot);
    chosen.onBoundary = chosen.onCells && IsOnBoundary(snapshot, chosen.name);
    return chosen;
}

}  // namespace qnl::imports
