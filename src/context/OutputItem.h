#pragma once

namespace qnl {

/// One record of the output item table.
struct OutputItem {
    unsigned char bOutput = 0;  ///< 1: written for this output time
    int nItemID = 0;            ///< 1 to 20
    int nDataType = 1;          ///< one value per node
    char szUnit[260] = {};
    char szName[264] = {};
    const double* pData = nullptr;  ///< source, by node; borrowed
    double dMax = -1000.0;          ///< running maximum
    double dMin = 1000.0;           ///< running minimum
};

}  // namespace qnl
