#include "results/OriginGroup.h"

#include <charconv>
#include <cstdio>
#include <string>

#include "results/ResultFile.h"
#include "results/ResultLayout.h"

namespace qnl::results {

namespace {

constexpr int kHexadecimal = 16;

std::string HashText(std::uint64_t hash) {
    char digits[kHexadecimal + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

std::uint64_t HashOf(const std::string& digits) {
    std::uint64_t hash = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), hash, kHexadecimal);
    return hash;
}

ResultInput ReadInput(const hdf5::InputFile& file, InputRole role) {
    const std::string key = NameOf(role);
    return {role,
            file.ReadText(layout::kInputs, key),
            {file.ReadScalar<std::int64_t>(layout::kInputs, key + "_size"),
             HashOf(file.ReadText(layout::kInputs, key + "_xxh3"))}};
}

ResultOrigin ReadGroup(const hdf5::InputFile& file) {
    ResultOrigin origin;
    origin.version = file.ReadText(layout::kInputs, "version");
    origin.mode = file.ReadScalar<std::int32_t>(layout::kInputs, "mode");
    origin.analysisCode = file.ReadScalar<std::int32_t>(layout::kInputs, "analysis_code");
    origin.diagnostics = file.ReadScalar<std::int32_t>(layout::kInputs, "diagnostics") != 0;
    for (std::size_t i = 0; i < kInputRoles.size(); ++i) {
        if (file.HasAttribute(layout::kInputs, kInputRoles[i])) {
            origin.inputs.push_back(ReadInput(file, static_cast<InputRole>(i)));
        }
    }
    return origin;
}

}  // namespace

void WriteOrigin(const ResultOrigin& origin, hdf5::OutputFile& file) {
    file.CreateGroup(layout::kInputs);
    file.WriteText(layout::kInputs, "version", origin.version);
    file.WriteScalar<std::int32_t>(layout::kInputs, "mode", origin.mode);
    file.WriteScalar<std::int32_t>(layout::kInputs, "analysis_code", origin.analysisCode);
    file.WriteScalar<std::int32_t>(layout::kInputs, "diagnostics", origin.diagnostics ? 1 : 0);
    for (const ResultInput& input : origin.inputs) {
        const std::string key = NameOf(input.role);
        file.WriteText(layout::kInputs, key, input.name);
        file.WriteScalar<std::int64_t>(layout::kInputs, key + "_size", input.digest.size);
        file.WriteText(layout::kInputs, key + "_xxh3", HashText(input.digest.hash));
    }
}

std::optional<ResultOrigin> ReadOrigin(const hdf5::InputFile& file) {
    try {
        return file.Exists(layout::kInputs) ? std::optional(ReadGroup(file)) : std::nullopt;
    } catch (const hdf5::Hdf5Error&) {
        return std::nullopt;
    }
}

std::optional<ResultOrigin> ReadResultOrigin(std::string_view path) {
    try {
        return ReadOrigin(hdf5::InputFile(path));
    } catch (const hdf5::Hdf5Error&) {
        return std::nullopt;
    }
}

}  // namespace qnl::results
