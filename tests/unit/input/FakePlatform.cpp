#include "unit/input/FakePlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/CThickGen.h"
#include "support/CallText.h"

namespace fake {

Platform& ThePlatform() {
    static Platform platform;
    return platform;
}

namespace {

template <typename... Values>
void Called(const char* name, const Values&... values) {
    ThePlatform().calls.push_back(CallText(name, values...));
}

}  // namespace
}  // namespace fake

using fake::Called;
using fake::ThePlatform;

struct CQNL3DResultReader_Manipulator::State {
    const fake::ResultFile* file = nullptr;
};

CQNL3DResultReader_Manipulator::CQNL3DResultReader_Manipulator() : state_(std::make_unique<State>()) {
    Called("construct");
}

CQNL3DResultReader_Manipulator::~CQNL3DResultReader_Manipulator() {
    Called("destroy");
}

int CQNL3DResultReader_Manipulator::BeginReading(const char* path, const char* option) {
    Called("BeginReading", path, option == nullptr ? "null" : option);
    const auto found = ThePlatform().files.find(path);
    if (found == ThePlatform().files.end()) {
        return -1;
    }
    state_->file = &found->second;
    return found->second.status;
}

int CQNL3DResultReader_Manipulator::GetResultVersion() {
    Called("GetResultVersion");
    return state_->file->version;
}

void CQNL3DResultReader_Manipulator::GetHeadInfo(int& code, int& stamp, char* mesh, char* material,
                                                 char* project, int& flag, int& itemCount) {
    Called("GetHeadInfo");
    code = stamp = flag = 0;
    for (char* text : {mesh, material, project}) {
        std::memset(text, 'x', 1023);
        text[1023] = '\0';
    }
    const fake::ResultFile& file = *state_->file;
    itemCount = file.itemCount == -1000 ? static_cast<int>(file.itemIds.size()) : file.itemCount;
}

void CQNL3DResultReader_Manipulator::GetResultItemInfo(int* itemIds, char** names, char** units,
                                                       int* dataTypes) {
    Called("GetResultItemInfo");
    const fake::ResultFile& file = *state_->file;
    for (std::size_t i = 0; i < file.itemIds.size(); ++i) {
        itemIds[i] = file.itemIds[i];
        dataTypes[i] = file.itemType;
        for (char* text : {names[i], units[i]}) {
            std::memset(text, static_cast<int>(i) + 1, 259);
            text[259] = '\0';
        }
    }
    for (std::size_t i = 0; i < file.itemIds.size(); ++i) {
        EXPECT_TRUE(names[i][0] == static_cast<int>(i) + 1 && units[i][258] == static_cast<int>(i) + 1)
            << "texts of the items overlap";
    }
}

int CQNL3DResultReader_Manipulator::GetMaxCavityNode() {
    Called("GetMaxCavityNode");
    return state_->file->maxNode;
}

int CQNL3DResultReader_Manipulator::GetMaxCavityElem() {
    Called("GetMaxCavityElem");
    return state_->file->maxElem;
}

bool CQNL3DResultReader_Manipulator::GetResultItem(int item, float* values) {
    Called("GetResultItem", item);
    const auto found = state_->file->items.find(item);
    if (found == state_->file->items.end()) {
        return false;
    }
    std::copy(found->second.begin(), found->second.end(), values + 1);
    return true;
}

bool CQNL3DResultReader_Manipulator::GetResultDataIDMap(QNLRESULTTYPE type) {
    Called("GetResultDataIDMap", static_cast<int>(type));
    return state_->file->hasMap;
}

bool CQNL3DResultReader_Manipulator::GetResultDataIDArray(QNLRESULTTYPE type, int* ids) {
    Called("GetResultDataIDArray", static_cast<int>(type));
    if (state_->file->givesMap) {
        std::copy(state_->file->map.begin(), state_->file->map.end(), ids + 1);
    }
    return state_->file->givesMap;
}

void CQNL3DResultReader_Manipulator::EndReading() {
    Called("EndReading");
}

CThickGen::CThickGen(const char* meshPath, const char* option) : m_nStatus(ThePlatform().thicknessStatus) {
    Called("CThickGen", meshPath, option == nullptr ? "null" : option);
}

bool QnlIsThermoplastic(const QnlMaterial* /*material*/) {
    Called("QnlIsThermoplastic");
    return ThePlatform().material.thermoplastic;
}

bool QnlIsThermoset(const QnlMaterial* /*material*/) {
    Called("QnlIsThermoset");
    return ThePlatform().material.thermoset;
}

double QnlGetFreezeTemp(const QnlMaterial* /*material*/) {
    Called("QnlGetFreezeTemp");
    return ThePlatform().material.freezeTemperature;
}

double QnlGetDensity(const QnlMaterial* /*material*/, double pressure, double temperature, double rate) {
    Called("QnlGetDensity", pressure, temperature, rate);
    return ThePlatform().material.density;
}

void QnlReleaseMaterial(QnlMaterial* /*material*/) {
    Called("QnlReleaseMaterial");
}
