#pragma once

/// What the entries of a result array belong to.
enum QNLRESULTTYPE : int {
    QNLRESULT_NODE = 1,
    QNLRESULT_ELEMENT = 2,
};
