#pragma once

#include <hdf5.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "hdf5/Hdf5.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t count, std::size_t most);

/// Changes what an HDF5 file holds and leaves the file itself whole. Bytes drawn over a whole file soon end
/// in faults of the HDF5 library, and our readers are hardly reached.
namespace hdf5_mutator {

using qnl::hdf5::Id;
using Bytes = std::vector<std::uint8_t>;

/// A dataset, or an attribute of an object.
struct Place {
    const char* object;
    const char* attribute = nullptr;
};

/// The values of numbers and texts of fixed length; empty for others.
inline Bytes RoomFor(const Id& type, const Id& space) {
    const hssize_t count = H5Sget_simple_extent_npoints(space.Get());
    const bool plain = H5Tis_variable_str(type.Get()) == 0 && H5Tget_class(type.Get()) != H5T_VLEN;
    return Bytes(count > 0 && plain ? static_cast<std::size_t>(count) * H5Tget_size(type.Get()) : 0);
}

inline void MutateAttribute(const Id& file, const Place& place) {
    const Id attribute(H5Aopen_by_name(file.Get(), place.object, place.attribute, H5P_DEFAULT, H5P_DEFAULT),
                       H5Aclose);
    if (!attribute) {
        return;
    }
    const Id type(H5Aget_type(attribute.Get()), H5Tclose);
    const Id space(H5Aget_space(attribute.Get()), H5Sclose);
    Bytes values = RoomFor(type, space);
    if (!values.empty() && H5Aread(attribute.Get(), type.Get(), values.data()) >= 0) {
        LLVMFuzzerMutate(values.data(), values.size(), values.size());
        H5Awrite(attribute.Get(), type.Get(), values.data());
    }
}

/// Writes the values over the dataset, or, when they are more or fewer, puts a new one in its place.
inline void Store(const Id& file, const Place& place, const Id& type, const Id& space, Bytes& values) {
    hsize_t shape[H5S_MAX_RANK] = {};
    const int rank = H5Sget_simple_extent_dims(space.Get(), shape, nullptr);
    hsize_t rowBytes = H5Tget_size(type.Get());
    for (int axis = 1; axis < rank; ++axis) {
        rowBytes *= shape[axis];
    }
    shape[0] = std::max<hsize_t>(values.size() / rowBytes, 1);
    values.resize(shape[0] * rowBytes);
    H5Ldelete(file.Get(), place.object, H5P_DEFAULT);
    const Id newSpace(H5Screate_simple(std::max(rank, 1), shape, nullptr), H5Sclose);
    const Id made(H5Dcreate2(file.Get(), place.object, type.Get(), newSpace.Get(), H5P_DEFAULT, H5P_DEFAULT,
                             H5P_DEFAULT),
                  H5Dclose);
    H5Dwrite(made.Get(), type.Get(), H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
}

inline void MutateDataset(const Id& file, const Place& place) {
    constexpr std::size_t kMoreBytes = 64;
    const Id dataset(H5Dopen2(file.Get(), place.object, H5P_DEFAULT), H5Dclose);
    if (!dataset) {
        return;
    }
    const Id type(H5Dget_type(dataset.Get()), H5Tclose);
    const Id space(H5Dget_space(dataset.Get()), H5Sclose);
    Bytes values = RoomFor(type, space);
    if (values.empty() ||
        H5Dread(dataset.Get(), type.Get(), H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) < 0) {
        return;
    }
    const std::size_t before = values.size();
    values.resize(before + kMoreBytes);
    values.resize(LLVMFuzzerMutate(values.data(), before, values.size()));
    if (values.size() == before) {
        H5Dwrite(dataset.Get(), type.Get(), H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    } else {
        Store(file, place, type, space, values);
    }
}

inline void Delete(const Id& file, const Place& place) {
    if (place.attribute == nullptr) {
        H5Ldelete(file.Get(), place.object, H5P_DEFAULT);
    } else {
        H5Adelete_by_name(file.Get(), place.object, place.attribute, H5P_DEFAULT);
    }
}

/// For LLVMFuzzerCustomMutator: changes or deletes one of the places in the file that the bytes are.
template <std::size_t N>
std::size_t Mutate(std::uint8_t* bytes, std::size_t count, std::size_t most, unsigned seed,
                   const Place (&places)[N]) {
    constexpr std::size_t kBlock = 4096;
    constexpr unsigned kDeletedOneIn = 50;
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    const Id access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
    H5Pset_fapl_core(access.Get(), kBlock, 0);
    H5Pset_file_image(access.Get(), bytes, count);
    const Id file(H5Fopen("image", H5F_ACC_RDWR, access.Get()), H5Fclose);
    if (!file) {
        return count;
    }
    std::minstd_rand random(seed);
    const Place& place = places[random() % N];
    if (random() % kDeletedOneIn == 0) {
        Delete(file, place);
    } else if (place.attribute != nullptr) {
        MutateAttribute(file, place);
    } else {
        MutateDataset(file, place);
    }
    H5Fflush(file.Get(), H5F_SCOPE_LOCAL);
    const ssize_t size = H5Fget_file_image(file.Get(), nullptr, 0);
    if (size <= 0 || static_cast<std::size_t>(size) > most) {
        return count;
    }
    H5Fget_file_image(file.Get(), bytes, static_cast<std::size_t>(size));
    return static_cast<std::size_t>(size);
}

}  // namespace hdf5_mutator
