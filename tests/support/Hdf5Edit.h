#pragma once

#include <string>
#include <vector>

/// Single changes of an HDF5 file, for tests that need one wrong field. Objects are absolute paths.
/// Everything raises std::runtime_error when the library refuses.
namespace hdf5_edit {

void DeleteAttribute(const std::string& file, const std::string& object, const std::string& name);
void DeleteObject(const std::string& file, const std::string& object);

/// Replaces an attribute, or adds it.
void PutInteger(const std::string& file, const std::string& object, const std::string& name, long long value);
void PutReal(const std::string& file, const std::string& object, const std::string& name, double value);
void PutText(const std::string& file, const std::string& object, const std::string& name,
             const std::string& text);

/// Replaces a dataset, attributes gone, or adds it; several axes are filled with the values in turn.
void PutFloats(const std::string& file, const std::string& object, const std::vector<float>& values,
               int axes = 1);
void PutIntegers(const std::string& file, const std::string& object, const std::vector<long long>& values);
void PutStrings(const std::string& file, const std::string& object, std::size_t count);

/// A dataset that announces `length` values and stores none.
void PutUnstored(const std::string& file, const std::string& object, unsigned long long length);

/// Copies the attributes of one object to another.
void CopyAttributes(const std::string& file, const std::string& from, const std::string& to);

}  // namespace hdf5_edit
