#pragma once

#include <string>
#include <vector>

namespace qnl::interop {

/// Values of all rows of a table under one name.
struct TableColumn {
    std::string name;
    int components = 1;
    std::vector<double>
        values;  ///< the components of a row beside each other; "not a number" where none is given
};

struct ValueTable {
    std::string file;
    std::size_t rows = 0;
    std::vector<TableColumn> columns;
};

/// Reads a table of numbers with a name for each column. An HDF5 file, told by its content, holds a dataset
/// of n or n x 3 numbers for each column; every other file is text: a line of names, then a line for each
/// row, with ";" between the fields if the first line has one, else tabulators, else commas. Lines that begin
/// with "#" and empty ones do not count, and an empty field is a value that is not given; between ";" a comma
/// may stand for the decimal point. Raises ForeignProblem.
ValueTable ReadValueTable(const std::string& file);

}  // namespace qnl::interop
