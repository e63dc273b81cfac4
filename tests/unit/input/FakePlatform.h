#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/QnlMaterial.h"

/// Result files, thickness generator and material that exist in memory only, and a record of the calls
/// made to them. Takes the place of the platform library in this test program.
namespace fake {

struct ResultFile {
    int status = 0;  ///< what BeginReading gives
    int version = 7;
    std::vector<int> itemIds;
    int itemType = 1;       ///< of all items: 1 by node, 2 by element
    int itemCount = -1000;  ///< -1000: the number of itemIds
    int maxNode = 0;
    int maxElem = 0;
    std::map<int, std::vector<float>> items;  ///< 0-based: the first value is entry 1
    bool hasMap = false;
    bool givesMap = true;
    std::vector<int> map;  ///< 0-based as above
};

struct Material {
    bool thermoplastic = false;
    bool thermoset = false;
    double freezeTemperature = 0.0;
    double density = 0.0;
};

struct Platform {
    std::map<std::string, ResultFile> files;  ///< by path; another path gives status -1
    int thicknessStatus = 0;
    Material material;
    std::vector<std::string> calls;
};

/// The one of this process.
Platform& ThePlatform();

}  // namespace fake
